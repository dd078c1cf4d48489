#include "cli/rows/TableRowWriter.h"

#include <algorithm>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr unsigned gap = 2; // between columns, in cells
constexpr char32_t ellipsis = 0x2026;

constexpr std::array<std::string_view, 6> headings = {"INDEX", "KIND", "DATE",
                                                      "FROM",  "NAME", "FOLDER"};

// What the columns take without a terminal: texts, dates and kinds as long as they usually are.
constexpr std::array<unsigned, 6> usualRooms = {7, 11, 19, 28, 44, 1};

// A terminal narrower than this shows no folders, or no senders either.
constexpr unsigned folderFrom = 110;
constexpr unsigned senderFrom = 70;

unsigned widthOf(std::string_view text) {
    unsigned width = 0;
    while (!text.empty()) {
        width += cellWidth(takeCodePoint(text));
    }
    return width;
}

// The start of `text` that leaves a cell of `room` for the ellipsis, and the ellipsis.
void appendCut(std::string& out, std::string_view text, unsigned room) {
    unsigned used = 0;
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        if (used + cellWidth(codePoint) >= room) {
            break;
        }
        used += cellWidth(codePoint);
        appendCodePoint(out, codePoint);
    }
    appendCodePoint(out, ellipsis);
    out.append(room - std::min(room, used + 1), ' ');
}

std::u16string_view titleOf(const olmhost::Row& row) {
    const std::u16string_view subject = row.text(olmhost::TextColumn::Subject);
    return subject.empty() ? row.text(olmhost::TextColumn::DisplayName) : subject;
}

} // namespace

TableRowWriter::TableRowWriter(unsigned width) : width(width) {
    std::ranges::copy(usualRooms, rooms.begin());
    if (width == 0) {
        return;
    }
    const unsigned taken = rooms[Index] + rooms[Kind] + rooms[Date] + 3 * gap;
    const unsigned rest = width > taken ? width - taken : 1;
    rooms[From] = 0;
    rooms[Title] = rest;
    rooms[Folder] = 0;
    if (width >= folderFrom) {
        rooms[From] = rest / 4;
        rooms[Folder] = rest / 3;
        rooms[Title] = rest - rooms[From] - rooms[Folder] - 2 * gap;
    } else if (width >= senderFrom) {
        rooms[From] = rest / 3;
        rooms[Title] = rest - rooms[From] - gap;
    }
}

void TableRowWriter::begin(std::string& out) {
    for (std::size_t column = 0; column < columnCount; ++column) {
        putCell(headings[column], static_cast<Column>(column));
    }
    endLine(out);
}

void TableRowWriter::write(std::string& out, const olmhost::Row& row) {
    folder.assign(nameParts(row).folder);
    std::ranges::replace(folder, u'\0', u'/');
    if (!folder.empty()) {
        folder.pop_back();
    }

    const std::string index = std::to_string(row.index);
    const std::size_t blanks = rooms[Index] - std::min<std::size_t>(rooms[Index], index.size());
    putCell(std::string(blanks, ' ') + index, Index);
    putCell(kindOf(row), Kind);
    putText(dateOf(row), Date);
    putText(row.text(olmhost::TextColumn::Sender), From);
    putText(titleOf(row), Title);
    putText(folder, Folder);
    endLine(out);
}

void TableRowWriter::putText(std::u16string_view text, Column column) {
    raw.clear();
    appendUtf8(raw, text);
    cell.clear();
    appendPrintable(cell, raw);
    putCell(cell, column);
}

void TableRowWriter::putCell(std::string_view text, Column column) {
    const unsigned room = rooms[column];
    if (room == 0) {
        return;
    }
    const unsigned needed = widthOf(text);
    if (width != 0 && needed > room) {
        appendCut(line, text, room);
    } else {
        line += text;
        line.append(needed < room ? room - needed : 0, ' ');
    }
    line.append(gap, ' ');
}

void TableRowWriter::endLine(std::string& out) {
    line.erase(line.find_last_not_of(' ') + 1);
    if (width != 0 && widthOf(line) > width) {
        appendCut(out, line, width);
    } else {
        out += line;
    }
    out += '\n';
    line.clear();
}

} // namespace olmkit
