#ifndef OLMKIT_HOST_SESSION_ROW_H
#define OLMKIT_HOST_SESSION_ROW_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace olmhost {

// The indexes of a row's eleven texts, in the order of the columns. Texts that a kind of item
// doesn't have are empty.
enum class TextColumn : std::size_t {
    Name, // the entry's folder, its levels separated by 0 units, and the item's name with ".msg"
    Sender,
    To, // addresses separated by ";"
    Cc, // likewise
    Subject,
    Sent,
    Received,
    Modified,
    Organizer,
    DisplayName,
    Title,
};

inline constexpr std::size_t textColumnCount = 11;

// One text of a row as the module sent it.
struct Cell {
    static constexpr std::uint32_t noTag = std::numeric_limits<std::uint32_t>::max();

    std::u16string_view text;
    std::uint32_t tagId = noTag;    // of the tag around the text, or noTag
    std::uint32_t tagIndex = noTag; // the tag's number in the row, from 0, or noTag
};

// One item: fourteen columns. What it points to is valid only during the callback.
struct Row {
    std::uint64_t index = 0;                    // among all items of the archive, from 0
    std::array<Cell, textColumnCount> texts;    // columns 1 to 11
    std::array<std::uint32_t, 2> specials = {}; // columns 12 and 13, numbered 6 and 7
    std::uint64_t locatorSize = 0;              // column 14: the size in its record,
    std::uint32_t entry = 0;                    // the archive entry that holds the item, from 0,
    std::uint32_t item = 0;                     // and the item's number in it, from 1
    std::string_view entryName;                 // UTF-8, as the archive's directory has it

    const Cell& cell(TextColumn column) const { return texts[static_cast<std::size_t>(column)]; }
    std::u16string_view text(TextColumn column) const { return cell(column).text; }
};

} // namespace olmhost

#endif
