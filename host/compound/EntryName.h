#ifndef OLMKIT_HOST_COMPOUND_ENTRYNAME_H
#define OLMKIT_HOST_COMPOUND_ENTRYNAME_H

#include <compare>
#include <cstddef>
#include <string_view>

// The rules for names of storages and streams (MS-CFB 2.6.1 and 2.6.4): names that differ only in
// case are equal.
namespace olmhost {

// Returns whether the name has 1 to 31 units, without / \ : and !
bool isValidEntryName(std::u16string_view name);

// Compares in the order of a directory: shorter names first, then by upper-cased units.
std::strong_ordering compareEntryNames(std::u16string_view left, std::u16string_view right);

// Returns a hash that is the same for equal names.
std::size_t hashEntryName(std::u16string_view name);

} // namespace olmhost

#endif
