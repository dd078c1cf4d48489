#include "cli/rows/ItemRow.h"

#include <algorithm>
#include <cstdint>

namespace olmkit {

namespace {

struct Kind {
    std::uint32_t special6;
    const char* name;
};

// clang-format off
constexpr Kind kinds[] = {
    {0x30000, "email"},
    {0x40000, "contact"}, // a group of contacts too
    {0x50000, "appointment"},
    {0x60000, "note"},
    {0x70000, "task"},
};
// clang-format on

} // namespace

std::string_view kindOf(const olmhost::Row& row) {
    const auto* found = std::ranges::find(kinds, row.specials[0], &Kind::special6);
    return found == std::end(kinds) ? "unknown" : found->name;
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

std::u16string_view shownText(const olmhost::Row& row, olmhost::TextColumn column,
                              std::u16string& scratch) {
    const std::u16string_view text = row.text(column);
    if (column != olmhost::TextColumn::Name || text.find(u'\0') == std::u16string_view::npos) {
        return text;
    }
    scratch.assign(text);
    std::ranges::replace(scratch, u'\0', u'/');
    return scratch;
}

NameParts nameParts(const olmhost::Row& row) {
    const std::u16string_view name = row.text(olmhost::TextColumn::Name);
    const std::size_t last = name.rfind(u'\0');
    const std::size_t start = last == std::u16string_view::npos ? 0 : last + 1;
    return {name.substr(0, start), name.substr(start)};
}

} // namespace olmkit
