#ifndef OLMKIT_HOST_MESSAGE_PROPERTYTYPE_H
#define OLMKIT_HOST_MESSAGE_PROPERTYTYPE_H

#include <cstddef>
#include <cstdint>

#include "host/stream/Export.h"

// The types of properties (MS-OXCDATA 2.11.1): the low 16 bits of a tag.
namespace olmhost {

enum PropertyType : std::uint16_t {
    PtypInteger16 = 0x0002,
    PtypInteger32 = 0x0003,
    PtypFloating32 = 0x0004,
    PtypFloating64 = 0x0005,
    PtypCurrency = 0x0006,
    PtypFloatingTime = 0x0007,
    PtypErrorCode = 0x000A,
    PtypBoolean = 0x000B,
    PtypObject = 0x000D,
    PtypInteger64 = 0x0014,
    PtypString8 = 0x001E,
    PtypString = 0x001F,
    PtypTime = 0x0040,
    PtypGuid = 0x0048,
    PtypBinary = 0x0102,
};

// Added to the type of a property with a list of values.
inline constexpr std::uint16_t multipleValues = 0x1000;

// How a value of a type is stored in a message.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order of the table's columns
struct TypeRow {
    std::uint16_t type;
    const char* name;
    const char* listName; // null when there are no lists of it
    std::size_t size;     // bytes of a value; 0 for texts, binary values and objects
    bool isInEntry;       // a single value is in the property's entry, not in a stream
};

// Returns the row of a type, with or without multipleValues; null for an unknown type.
OLMHOST_EXPORT const TypeRow* findType(std::uint16_t type);

// Returns the name of a type; null for an unknown type.
OLMHOST_EXPORT const char* typeName(std::uint16_t type);

} // namespace olmhost

#endif
