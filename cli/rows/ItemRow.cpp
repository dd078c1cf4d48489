#include "cli/rows/ItemRow.h"

#include <algorithm>
#include <cstdint>

namespace olmkit {

namespace {

// clang-format off
constexpr std::string_view kinds[] = {
    "email",       // special column 6 is 0x30000
    "contact",     // 0x40000; a group of contacts too
    "appointment", // 0x50000
    "note",        // 0x60000
    "task",        // 0x70000
};
// clang-format on

constexpr std::uint32_t kindStep = 0x10000;
constexpr std::uint32_t firstKind = 3;

} // namespace

std::span<const std::string_view> kindNames() {
    return kinds;
}

std::string_view kindOf(const olmhost::Row& row) {
    const std::uint32_t special6 = row.specials[0];
    const std::uint32_t place = special6 / kindStep - firstKind; // wraps below the first one
    return special6 % kindStep == 0 && place < std::size(kinds) ? kinds[place] : "unknown";
}

std::u16string_view dateOf(const olmhost::Row& row) {
    for (const auto column : {olmhost::TextColumn::Sent, olmhost::TextColumn::Received,
                              olmhost::TextColumn::Modified}) {
        if (!row.text(column).empty()) {
            return row.text(column);
        }
    }
    return {};
}

std::u16string_view labelOf(const olmhost::Row& row) {
    const std::u16string_view subject = row.text(olmhost::TextColumn::Subject);
    return subject.empty() ? row.text(olmhost::TextColumn::DisplayName) : subject;
}

NameParts nameParts(const olmhost::Row& row) {
    const std::u16string_view name = row.text(olmhost::TextColumn::Name);
    const std::size_t last = name.rfind(u'\0');
    const std::size_t start = last == std::u16string_view::npos ? 0 : last + 1;
    return {name.substr(0, start), name.substr(start)};
}

std::u16string folderOf(const olmhost::Row& row) {
    std::u16string folder(nameParts(row).folder);
    std::ranges::replace(folder, u'\0', u'/');
    if (!folder.empty()) {
        folder.pop_back();
    }
    return folder;
}

} // namespace olmkit
