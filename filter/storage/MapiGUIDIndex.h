#ifndef OLMKIT_FILTER_STORAGE_MAPIGUIDINDEX_H
#define OLMKIT_FILTER_STORAGE_MAPIGUIDINDEX_H

#include <cstdint>

// Property sets of named properties ([MS-OXPROPS] 1.3.2): rows of MapiGUIDMap::TheGuids.
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
