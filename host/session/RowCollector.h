#ifndef OLMKIT_HOST_SESSION_ROWCOLLECTOR_H
#define OLMKIT_HOST_SESSION_ROWCOLLECTOR_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/Column.h"
#include "host/session/Row.h"

namespace olmhost {

// Builds a row from the module's calls, cell by cell.
//
// All text of a row is in one buffer that is reused for each row: once it is as large as the
// largest row, collecting allocates nothing.
class RowCollector {
public:
    // Column definitions: a column is complete with its third call.
    void columnType(std::array<std::uint32_t, 3> numbers) { defining.type = numbers; }
    void columnFormat(std::array<std::uint32_t, 3> numbers) { defining.format = numbers; }
    void columnDone(std::array<std::uint32_t, 4> numbers);

    const std::vector<Column>& columns() const { return defined; }

    // Returns whether the columns are eleven texts, two 32-bit numbers and a locator.
    bool isUsual() const;

    // Cells, in the order of the columns.
    void putText(std::u16string_view text) { characters.append(text); }
    void putCharacter(char16_t character) { characters.push_back(character); }
    void putValue(const void* value);
    void beginTag(std::uint32_t tagIndex, std::uint32_t tagId);
    void endCell();

    // Returns the row so far, without its index and the entry's name. Missing cells are empty. Its
    // texts are valid until the next call of any put function.
    Row& finish();

    // Begins the next row.
    void clear();

private:
    struct Span {
        std::size_t end =
            0; // of the cell's text in `characters`; it starts at the end of the previous one
        std::uint32_t tagId = Cell::noTag;
        std::uint32_t tagIndex = Cell::noTag;
    };

    std::vector<Column> defined;
    Column defining;
    std::u16string characters;
    std::array<Span, textColumnCount> spans;
    std::size_t column = 0; // of the open cell, from 0
    Row row;
};

} // namespace olmhost

#endif
