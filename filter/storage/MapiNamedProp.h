#ifndef OLMKIT_FILTER_STORAGE_MAPINAMEDPROP_H
#define OLMKIT_FILTER_STORAGE_MAPINAMEDPROP_H

#include <cstdint>

#include "filter/core/WString.h"
#include "filter/storage/MapiGUIDIndex.h"

// One named property that can be written: a row of MapiNamedPropMap::supportedProps.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): 41 rows; the order is for the reader
struct MapiNamedProp {
    // Numeric name: named id in the high 16 bits, property type in the low 16 bits. String name:
    // the name's hashCode.
    uint32_t propTag = 0;
    qor::WString name;    // string name; empty for a numeric one
    uint32_t nameCrc = 0; // checksum of a string name; 0: to be worked out
    bool isStringName = false;
    MapiGUIDIndex guidSet = SetCommon;
};

#endif
