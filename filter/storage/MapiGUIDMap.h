#ifndef OLMKIT_FILTER_STORAGE_MAPIGUIDMAP_H
#define OLMKIT_FILTER_STORAGE_MAPIGUIDMAP_H

#include <cstdint>

#include "filter/storage/MapiGUIDIndex.h"

// A GUID in the parts in which it is written.
struct MapiGUID {
    uint64_t first; // the low 32 bits alone carry the value
    uint16_t second;
    uint16_t third;
    uint8_t last[8]; // bytes as they stand
};

// The GUIDs of the property sets. Holds no data of its own.
class MapiGUIDMap {
public:
    static const MapiGUID TheGuids[7]; // by MapiGUIDIndex

    // The record of `set`, constant. Throws qor::Exception ErrUnknown for a value above the last
    // set; a negative one must not be given.
    static const MapiGUID* getMaipGuid(MapiGUIDIndex set);
};

#endif
