#ifndef OLMKIT_CLI_ROWS_ITEMROW_H
#define OLMKIT_CLI_ROWS_ITEMROW_H

#include <array>
#include <string>
#include <string_view>

#include "host/session/Row.h"

namespace olmkit {

// The text columns of a row by the names that scripts know, in their order.
struct NamedColumn {
    const char* key;
    olmhost::TextColumn column;
};

// clang-format off
inline constexpr std::array<NamedColumn, olmhost::textColumnCount> namedColumns = {{
    {"name",         olmhost::TextColumn::Name},
    {"sender",       olmhost::TextColumn::Sender},
    {"to",           olmhost::TextColumn::To},
    {"cc",           olmhost::TextColumn::Cc},
    {"subject",      olmhost::TextColumn::Subject},
    {"sent",         olmhost::TextColumn::Sent},
    {"received",     olmhost::TextColumn::Received},
    {"modified",     olmhost::TextColumn::Modified},
    {"organizer",    olmhost::TextColumn::Organizer},
    {"display_name", olmhost::TextColumn::DisplayName},
    {"title",        olmhost::TextColumn::Title},
}};
// clang-format on

// What kind of item a row is, from its special column 6; "unknown" for a number of no kind.
std::string_view kindOf(const olmhost::Row& row);

// The date that tells most about an item of any kind: when it was sent, received, or changed last.
std::u16string_view dateOf(const olmhost::Row& row);

// The units of a row's column as people see them: in `name`, "/" stands between the levels of the
// folder. `scratch` holds the text where it differs from the row's.
std::u16string_view shownText(const olmhost::Row& row, olmhost::TextColumn column,
                              std::u16string& scratch);

// The two parts of `name`: the folder's levels, parted and ended by 0 units; the item's own name
// with ".msg".
struct NameParts {
    std::u16string_view folder;
    std::u16string_view item;
};
NameParts nameParts(const olmhost::Row& row);

} // namespace olmkit

#endif
