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

// One of the six patterns, with its numbers in MS-OXOCAL 2.2.1.44.1.
struct PlainPattern {
    const char* text;
    uint16_t frequency;
    uint16_t type;
};

// Returns all patterns.
std::span<const PlainPattern> plainPatterns();

// How a recurrence ends, with its EndType in MS-OXOCAL 2.2.1.44.1.
struct PlainEnd {
    bool isNever;     // explicitly without an end
    bool isAnnounced; // declared to have an end date
    bool hasDate;     // with an end date
    uint32_t count;   // 0: without a count
    uint32_t type;
};

// Returns every way in which elements can express the end.
std::span<const PlainEnd> plainEnds();

// Returns the standard offsets of the world's zones in minutes, from west to east.
std::span<const int> plainZones();

// A recurrence as a calendar shows it: in days and minutes of local time.
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
    int lastMinute;        // of the end date, since midnight
    int startMinute;       // of the item, since midnight of its first day
    int endMinute;         // likewise
    int zone;              // standard offset in minutes
    bool isDaylightSaving; // local time is an hour later than standard time
};

// Returns a recurrence whose other members are derived from the arguments, so that neighbours
// differ in all of them. The first day is the first one of the mask in its week, as in a calendar.
PlainRecurrence plainRecurrence(const PlainPattern& pattern, const PlainEnd& end, int zone,
                                bool isDaylightSaving, uint32_t days);

// Returns the RecurrencePattern structure of MS-OXOCAL 2.2.1.44.1, calculated in calendar days;
// nothing for a weekly recurrence without days.
std::optional<fakehost::Bytes> plainValue(const PlainRecurrence& plain);

// Returns universal time, in minutes since 1970.
int64_t universalMinute(const PlainRecurrence& plain, std::chrono::sys_days day, int minute);

// Return the recurrence and its item as they are in an archive.
fakehost::ItemDocument plainDocument(const PlainRecurrence& plain);
RecurringItem plainItem(const PlainRecurrence& plain);

// Returns a description for messages of failed tests.
std::string describe(const PlainRecurrence& plain);

#endif
