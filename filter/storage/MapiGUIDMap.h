#ifndef OLMKIT_FILTER_STORAGE_MAPIGUIDMAP_H
#define OLMKIT_FILTER_STORAGE_MAPIGUIDMAP_H

#include <cstdint>

#include "filter/storage/MapiGUIDIndex.h"

// A GUID, in the parts in which it is written.
struct MapiGUID {
    uint64_t first; // only the low 32 bits are used
    uint16_t second;
    uint16_t third;
    uint8_t last[8]; // bytes in order
};

// The GUIDs of the property sets.
class MapiGUIDMap {
public:
    static const MapiGUID TheGuids[7]; // by MapiGUIDIndex

    // Returns the GUID of `set`, a constant. Throws qor::Exception ErrUnknown for a value above the
    // last set. REQUIRES: the value is not negative.
    static const MapiGUID* getMaipGuid(MapiGUIDIndex set);
};

#endif
