#ifndef OLMKIT_CLI_ROWS_ITEMROW_H
#define OLMKIT_CLI_ROWS_ITEMROW_H

#include <span>
#include <string>
#include <string_view>

#include "host/session/Row.h"

namespace olmkit {

// The kinds of items, in the order in which people are told of them.
std::span<const std::string_view> kindNames();

// What kind of item a row is, from its special column 6; "unknown" for a number of no kind.
std::string_view kindOf(const olmhost::Row& row);

// The date that tells most about an item of any kind: when it was sent, received, or changed last.
std::u16string_view dateOf(const olmhost::Row& row);

// What people call an item of any kind: its subject, or its display name.
std::u16string_view labelOf(const olmhost::Row& row);

// The two parts of `name`: the folder's levels, parted and ended by 0 units; the item's own name
// with ".msg".
struct NameParts {
    std::u16string_view folder;
    std::u16string_view item;
};
NameParts nameParts(const olmhost::Row& row);

// The folder as people see it: "/" stands between its levels.
std::u16string folderOf(const olmhost::Row& row);

} // namespace olmkit

#endif
