#ifndef OLMKIT_FILTER_STORAGE_MAPINAMEDPROP_H
#define OLMKIT_FILTER_STORAGE_MAPINAMEDPROP_H

#include <cstdint>

#include "filter/core/WString.h"
#include "filter/storage/MapiGUIDIndex.h"

// One named property that a message may contain: a row of MapiNamedPropMap::supportedProps.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): 41 rows; the order is for the reader
struct MapiNamedProp {
    // Numeric name: a MapiNamedPropKey. String name: the hashCode of the name.
    uint32_t propTag = 0;
    qor::WString name;    // of a string name; otherwise empty
    uint32_t nameCrc = 0; // checksum of a string name; 0: to be calculated
    bool isStringName = false;
    MapiGUIDIndex guidSet = SetCommon;
};

#endif
