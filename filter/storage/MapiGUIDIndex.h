#ifndef OLMKIT_FILTER_STORAGE_MAPIGUIDINDEX_H
#define OLMKIT_FILTER_STORAGE_MAPIGUIDINDEX_H

#include <cstdint>

// The property sets of named properties: rows of MapiGUIDMap::TheGuids.
enum MapiGUIDIndex : int32_t {
    SetCommon = 0,
    SetAddress = 1,
    SetAppointment = 2,
    SetMeeting = 3,
    SetTask = 4,
    SetNote = 5,
    SetPublicStrings = 6,
};

#endif
