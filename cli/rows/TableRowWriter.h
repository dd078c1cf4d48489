#ifndef OLMKIT_CLI_ROWS_TABLEROWWRITER_H
#define OLMKIT_CLI_ROWS_TABLEROWWRITER_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "cli/rows/RowWriter.h"

namespace olmkit {

// A table for people: columns of fixed width, so that the first row can be seen at once.
class TableRowWriter : public RowWriter {
public:
    // `width` is the terminal's, in cells: no line is longer, a narrow one leaves columns out, and
    // what is too long for its column is cut, with an ellipsis. With 0 nothing is cut or left out.
    explicit TableRowWriter(unsigned width);

    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    enum Column : std::size_t { Index, Kind, Date, From, Title, Folder, columnCount };

    void putCell(std::string_view text, Column column);
    void putText(std::u16string_view text, Column column);
    void endLine(std::string& out);

    unsigned width;
    std::array<unsigned, columnCount> rooms = {}; // in cells; 0: left out
    std::string line;
    std::string raw;
    std::string cell;
    std::u16string folder;
};

} // namespace olmkit

#endif
