#ifndef OLMKIT_HOST_MESSAGE_PROPERTYNAMES_H
#define OLMKIT_HOST_MESSAGE_PROPERTYNAMES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/stream/Export.h"

// What properties and property sets are called (MS-OXPROPS).
namespace olmhost {

// A property set's GUID as it stands in a file.
using PropertySet = std::array<std::byte, 16>;

// Each is null for what has no name here.
OLMHOST_EXPORT const char* tagName(std::uint16_t id);
OLMHOST_EXPORT const char* setName(const PropertySet& set);
OLMHOST_EXPORT const char* namedPropertyName(const PropertySet& set, std::uint32_t id);
OLMHOST_EXPORT const char* namedPropertyName(const PropertySet& set, std::u16string_view text);

// Whether the number of a property is a set of bits.
OLMHOST_EXPORT bool isBitField(std::uint16_t id);

// "{00062008-0000-0000-C000-000000000046}".
OLMHOST_EXPORT std::string setText(const PropertySet& set);

// The two sets that every message knows without listing them.
OLMHOST_EXPORT const PropertySet& mapiSet();
OLMHOST_EXPORT const PropertySet& publicStringsSet();

} // namespace olmhost

#endif
