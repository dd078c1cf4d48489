#ifndef OLMKIT_FILTER_RECURRENCE_OLMRECURRENCETAGS_H
#define OLMKIT_FILTER_RECURRENCE_OLMRECURRENCETAGS_H

#include <array>
#include <cstdint>

#include "filter/xml/TagTable.h"

// Codes of OLMRecurrence. They differ from the codes of the writers, whose tables are in the same
// reader.
enum RecurrenceCode : unsigned int {
    RecurEndDate = 10,
    RecurStartDate = 11,
    RecurOccurrenceCount = 12,
    RecurHasEndDate = 13,
    RecurIsNoEnd = 14,
    RecurIsNumbered = 15,
    RecurPatternElement = 16,
    RecurDaysOfWeek = 17,
    RecurInterval = 18,
    RecurPatternText = 19,
    RecurWeek = 20,
    RecurMonth = 21,
    RecurDayOfMonth = 22,
    RecurAllDays = 23,
    RecurFriday = 24,
    RecurMonday = 25,
    RecurSaturday = 26,
    RecurSunday = 27,
    RecurThursday = 28,
    RecurTuesday = 29,
    RecurWednesday = 30,
    RecurWeekdays = 31,
    RecurWeekendDays = 32,
};

// clang-format off
inline constexpr auto recurrenceTags = std::to_array<UTXML_STRVALPAIR>({
    // value               element                           becomes
    {RecurEndDate,         "OPFRecurrenceCopyEndDate"},       // end
    {RecurStartDate,       "OPFRecurrenceCopyStartDate"},     // start
    {RecurOccurrenceCount, "OPFRecurrenceGetOccurenceCount"}, // number of occurrences
    {RecurHasEndDate,      "OPFRecurrenceHasEndDate"},        // whether the end is a date
    {RecurIsNoEnd,         "OPFRecurrenceIsNoEnd"},           // end type
    {RecurIsNumbered,      "OPFRecurrenceIsNumbered"},        // nothing
    {RecurPatternElement,  "OPFRecurrencePattern"},           // nothing: its children are read
    {RecurDayOfMonth,      "OPFRecurrencePatternDayOfMonth"}, // day of the month
    {RecurDaysOfWeek,      "OPFRecurrencePatternDaysOfWeek"}, // day mask, from its children
    {RecurInterval,        "OPFRecurrencePatternInterval"},   // interval
    {RecurMonth,           "OPFRecurrencePatternMonth"},      // month of the year
    {RecurPatternText,     "OPFRecurrencePatternType"},       // frequency and pattern type
    {RecurWeek,            "OPFRecurrencePatternWeek"},       // week of the month
    {RecurAllDays,         "allDays"},                        // from here on: bits of the day mask
    {RecurFriday,          "friday"},
    {RecurMonday,          "monday"},
    {RecurSaturday,        "saturday"},
    {RecurSunday,          "sunday"},
    {RecurThursday,        "thursday"},
    {RecurTuesday,         "tuesday"},
    {RecurWednesday,       "wednesday"},
    {RecurWeekdays,        "weekdays"},
    {RecurWeekendDays,     "weekenddays"},
});

// The day mask of each code from RecurAllDays on.
inline constexpr auto recurrenceDayFlags = std::to_array<uint32_t>({
    0x7F, // allDays
    0x20, // friday
    0x02, // monday
    0x40, // saturday
    0x01, // sunday
    0x10, // thursday
    0x04, // tuesday
    0x08, // wednesday
    0x3E, // weekdays
    0x41, // weekenddays
});
// clang-format on

static_assert(recurrenceTags.size() == 23);
static_assert(inByteOrder(recurrenceTags), "ascending byte order of the names, no name twice");
static_assert(recurrenceDayFlags.size() == RecurWeekendDays - RecurAllDays + 1);

#endif
