#ifndef OLMKIT_TESTS_UNIT_RECURRENCE_PLAINRECURRENCE_H
#define OLMKIT_TESTS_UNIT_RECURRENCE_PLAINRECURRENCE_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tests/fakehost/Bytes.h"
#include "tests/fakehost/ItemDocument.h"
#include "tests/unit/recurrence/ParsedRecurrence.h"

// One of the six patterns, in the numbers of [MS-OXOCAL].
struct PlainPattern {
    const char* text;
    uint16_t frequency;
    uint16_t type;
};

// All of them.
std::span<const PlainPattern> plainPatterns();

// How a recurrence ends, and the number that [MS-OXOCAL] has for it.
struct PlainEnd {
    bool isNever;     // said in so many words
    bool isAnnounced; // an end date is
    bool isDateGiven; // an end date stands there
    uint32_t count;   // 0: not told
    uint32_t type;
};

// Every way that elements can say it.
std::span<const PlainEnd> plainEnds();

// Standard offsets of the world's zones in minutes, farthest west to farthest east.
std::span<const int> plainZones();

// A recurrence as a calendar shows it: in days and minutes of the zone's own clock.
struct PlainRecurrence {
    PlainPattern pattern;
    PlainEnd end;
    uint32_t interval;
    uint32_t days; // bit 0 for Sunday
    uint32_t week;
    uint32_t dayOfMonth;
    uint32_t month; // 0: none
    std::chrono::sys_days firstDay;
    std::chrono::sys_days lastDay;
    int lastMinute;        // of the end date, from midnight
    int startMinute;       // of the item, from midnight of its first day
    int endMinute;         // as above
    int zone;              // standard offset in minutes
    bool isDaylightSaving; // the clock is an hour ahead of the standard
};

// One of many: every member follows from the numbers, so that neighbours differ in all of them.
// The first day is the first one of the mask in its week, as in a calendar.
PlainRecurrence plainRecurrence(const PlainPattern& pattern, const PlainEnd& end, int zone,
                                bool isDaylightSaving, uint32_t days);

// What [MS-OXOCAL] makes of it, worked out in days of the calendar; none when it repeats weekly on
// no day.
std::optional<fakehost::Bytes> plainValue(const PlainRecurrence& plain);

// Minutes since 1970, universal time.
int64_t universalMinute(const PlainRecurrence& plain, std::chrono::sys_days day, int minute);

// The recurrence and its item as an archive has them.
fakehost::ItemDocument plainDocument(const PlainRecurrence& plain);
RecurringItem plainItem(const PlainRecurrence& plain);

// For messages of failed tests.
std::string describe(const PlainRecurrence& plain);

#endif
