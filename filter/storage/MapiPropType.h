#ifndef OLMKIT_FILTER_STORAGE_MAPIPROPTYPE_H
#define OLMKIT_FILTER_STORAGE_MAPIPROPTYPE_H

#include <cstdint>

// Property types: the low 16 bits of a property tag ([MS-OXCDATA] 2.11.1).
enum MapiPropType : uint16_t {
    TypeInteger32 = 0x0003,
    TypeDouble = 0x0005,
    TypeBoolean = 0x000B,
    TypeString = 0x001F, // UTF-16
    TypeTime = 0x0040,   // 100-nanosecond units since 1601
    TypeBinary = 0x0102,
    TypeStringList = 0x101F, // multiple-valued string
    TypeBinaryList = 0x1102, // multiple-valued binary
};

// Returns the type of the property that `tag` names.
constexpr uint16_t propertyType(uint32_t tag) {
    return static_cast<uint16_t>(tag & 0xFFFF);
}

#endif
