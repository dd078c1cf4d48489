#ifndef OLMKIT_HOST_MESSAGE_PROPERTYNAMES_H
#define OLMKIT_HOST_MESSAGE_PROPERTYNAMES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/stream/Export.h"

// The names of properties and property sets (MS-OXPROPS).
namespace olmhost {

// A property set's GUID, in the byte order of a file.
using PropertySet = std::array<std::byte, 16>;

// Return the name of a property tag's id, of a set, and of a property in a set. Null when it is not
// known.
OLMHOST_EXPORT const char* tagName(std::uint16_t id);
OLMHOST_EXPORT const char* setName(const PropertySet& set);
OLMHOST_EXPORT const char* namedPropertyName(const PropertySet& set, std::uint32_t id);
OLMHOST_EXPORT const char* namedPropertyName(const PropertySet& set, std::u16string_view text);

// Returns whether the value of a property is a set of bits.
OLMHOST_EXPORT bool isBitField(std::uint16_t id);

// Returns "{00062008-0000-0000-C000-000000000046}", for example.
OLMHOST_EXPORT std::string setText(const PropertySet& set);

// Return the two sets that no message lists: PS_MAPI and PS_PUBLIC_STRINGS.
OLMHOST_EXPORT const PropertySet& mapiSet();
OLMHOST_EXPORT const PropertySet& publicStringsSet();

} // namespace olmhost

#endif
