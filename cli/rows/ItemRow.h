#ifndef OLMKIT_CLI_ROWS_ITEMROW_H
#define OLMKIT_CLI_ROWS_ITEMROW_H

#include <span>
#include <string>
#include <string_view>

#include "host/session/Row.h"

namespace olmkit {

// Returns the names of the kinds of items, in the order in which messages list them.
std::span<const std::string_view> kindNames();

// Returns the kind of a row, from its special column 6; "unknown" for any other number.
std::string_view kindOf(const olmhost::Row& row);

// Returns the first of these dates that the item has: sent, received, last modified. Empty without
// one.
std::u16string_view dateOf(const olmhost::Row& row);

// Returns the text that identifies an item of any kind: its subject, otherwise its display name.
std::u16string_view labelOf(const olmhost::Row& row);

// The two parts of a row's name: the levels of its folder, each ended by a 0 unit, and the item's
// own name with ".msg".
struct NameParts {
    std::u16string_view folder;
    std::u16string_view item;
};
NameParts nameParts(const olmhost::Row& row);

// Returns the folder with "/" between its levels.
std::u16string folderOf(const olmhost::Row& row);

} // namespace olmkit

#endif
