#ifndef OLMKIT_HOST_COMPOUND_ENTRYNAME_H
#define OLMKIT_HOST_COMPOUND_ENTRYNAME_H

#include <compare>
#include <cstddef>
#include <string_view>

// The rules for names of storages and streams: two names that differ in case only are one.
namespace olmhost {

// 1 to 31 units, without / \ : and !
bool isValidEntryName(std::u16string_view name);

// The order of a directory: shorter names first, then by upper-cased units.
std::strong_ordering compareEntryNames(std::u16string_view left, std::u16string_view right);

// Equal for names that are one.
std::size_t hashEntryName(std::u16string_view name);

} // namespace olmhost

#endif
