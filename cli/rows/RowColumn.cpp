#include "cli/rows/RowColumn.h"

#include <algorithm>
#include <array>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

using olmhost::Row;
using olmhost::TextColumn;

constexpr std::size_t scriptColumnCount = 18; // the first rows of the table below

// A narrower terminal shows no folders, or neither folders nor senders.
constexpr unsigned minWidthWithFolder = 110;
constexpr unsigned minWidthWithSender = 70;

std::uint64_t indexNumber(const Row& row) {
    return row.index;
}
std::uint64_t entryNumber(const Row& row) {
    return row.entry;
}
std::uint64_t itemNumber(const Row& row) {
    return row.item;
}
template <std::size_t place> std::uint64_t special(const Row& row) {
    return row.specials[place];
}

template <TextColumn column> void append(std::string& out, const Row& row) {
    appendUtf8(out, row.text(column));
}
void appendEntryName(std::string& out, const Row& row) {
    out += row.entryName;
}
void appendKind(std::string& out, const Row& row) {
    out += kindOf(row);
}
// With "/" between the levels of the folder.
void appendName(std::string& out, const Row& row) {
    const std::size_t start = out.size();
    append<TextColumn::Name>(out, row);
    std::replace(out.begin() + static_cast<std::ptrdiff_t>(start), out.end(), '\0', '/');
}
void appendDate(std::string& out, const Row& row) {
    appendUtf8(out, dateOf(row));
}
void appendLabel(std::string& out, const Row& row) {
    appendUtf8(out, labelOf(row));
}
void appendFolder(std::string& out, const Row& row) {
    appendUtf8(out, folderOf(row));
}

// clang-format off
constexpr std::array<RowColumn, 21> columns = {{
    // key           heading         width share number      text
    {"index",        "INDEX",        7,   0,    indexNumber, nullptr},
    {"entry",        "ENTRY",        7,   0,    entryNumber, nullptr},
    {"item",         "ITEM",         7,   0,    itemNumber,  nullptr},
    {"entry_name",   "ENTRY NAME",   44,  5,    nullptr,     appendEntryName},
    {"kind",         "KIND",         11,  0,    nullptr,     appendKind},
    {"name",         "FULL NAME",    44,  5,    nullptr,     appendName},
    {"sender",       "FROM",         28,  3,    nullptr,     append<TextColumn::Sender>},
    {"to",           "TO",           28,  3,    nullptr,     append<TextColumn::To>},
    {"cc",           "CC",           28,  3,    nullptr,     append<TextColumn::Cc>},
    {"subject",      "SUBJECT",      44,  5,    nullptr,     append<TextColumn::Subject>},
    {"sent",         "SENT",         19,  0,    nullptr,     append<TextColumn::Sent>,     true},
    {"received",     "RECEIVED",     19,  0,    nullptr,     append<TextColumn::Received>, true},
    {"modified",     "MODIFIED",     19,  0,    nullptr,     append<TextColumn::Modified>, true},
    {"organizer",    "ORGANIZER",    28,  3,    nullptr,     append<TextColumn::Organizer>},
    {"display_name", "DISPLAY NAME", 28,  3,    nullptr,     append<TextColumn::DisplayName>},
    {"title",        "TITLE",        28,  3,    nullptr,     append<TextColumn::Title>},
    {"special6",     "SPECIAL6",     8,   0,    special<0>,  nullptr},
    {"special7",     "SPECIAL7",     8,   0,    special<1>,  nullptr},
    {"date",         "DATE",         19,  0,    nullptr,     appendDate,                   true},
    {"label",        "NAME",         44,  5,    nullptr,     appendLabel},
    {"folder",       "FOLDER",       28,  4,    nullptr,     appendFolder},
}};
// clang-format on

} // namespace

std::span<const RowColumn> allColumns() {
    return columns;
}

RowColumns scriptColumns() {
    RowColumns chosen;
    for (const RowColumn& column : allColumns().first(scriptColumnCount)) {
        chosen.push_back(&column);
    }
    return chosen;
}

RowColumns tableColumns(unsigned width) {
    RowColumns chosen;
    for (const std::string_view key : {"index", "kind", "date", "sender", "label", "folder"}) {
        const bool isLeftOut = width != 0 && ((key == "folder" && width < minWidthWithFolder) ||
                                              (key == "sender" && width < minWidthWithSender));
        if (!isLeftOut) {
            chosen.push_back(findColumn(key));
        }
    }
    return chosen;
}

const RowColumn* findColumn(std::string_view key) {
    const auto* found =
        std::ranges::find_if(columns, [key](const RowColumn& column) { return column.key == key; });
    return found == columns.end() ? nullptr : found;
}

} // namespace olmkit
