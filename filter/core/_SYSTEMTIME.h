#ifndef OLMKIT_FILTER_CORE_SYSTEMTIME_H
#define OLMKIT_FILTER_CORE_SYSTEMTIME_H

#include <cstdint>

// The fields of a moment in universal time.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the object library prescribes the name
struct _SYSTEMTIME {
    uint16_t wYear;
    uint16_t wMonth;     // 1 to 12
    uint16_t wDayOfWeek; // 0 for Sunday
    uint16_t wDay;       // 1 to 31
    uint16_t wHour;
    uint16_t wMinute;
    uint16_t wSecond;
    uint16_t wMilliseconds;
};

#endif
