#ifndef OLMKIT_TESTS_UNIT_WRITERS_RECURRINGITEMS_H
#define OLMKIT_TESTS_UNIT_WRITERS_RECURRINGITEMS_H

#include "tests/unit/writers/WriterFrame.h"

// What the tests of appointments and tasks share: recurrences.

inline constexpr const char* calRecurrence = "OPFCalendarEventCopyRecurrence";
inline constexpr const char* calStart = "OPFCalendarEventCopyStartTime";
inline constexpr const char* calEnd = "OPFCalendarEventCopyEndTime";
inline constexpr const char* calZone = "OPFCalendarEventCopyTimeZone";
inline constexpr const char* taskRecurrence = "OPFTaskCopyRecurrence";
inline constexpr const char* taskStart = "OPFTaskCopyStartDateTime";
inline constexpr const char* taskDue = "OPFTaskCopyDueDateTime";

// Adds a recurrence as an element of this name: every second week on Monday, from 2011-05-02 to
// 2011-06-27, both at 05:00 universal time, five times.
fakehost::ItemDocument& addWeekly(fakehost::ItemDocument& item, const char* element);

// Returns its 80 bytes for an item from 2011-05-02T14:00:00 to 15:30:00, in the zone UTC-05:00.
fakehost::Bytes weeklyValue();

// The same without a zone; the offsets are in minutes after the recurrence's start.
fakehost::Bytes weeklyValueWithoutZone(uint32_t startOffset, uint32_t endOffset);

// Adds every third day from 2018-06-18T00:00:00 on, without an end.
fakehost::ItemDocument& addDaily(fakehost::ItemDocument& item, const char* element);

// Returns its 76 bytes, without a zone; the offsets are in minutes after the recurrence's start.
fakehost::Bytes dailyValue(uint32_t startOffset, uint32_t endOffset);

// Adds the second Tuesday of every month from 2018-06-18T00:00:00 on, twelve times.
fakehost::ItemDocument& addMonthly(fakehost::ItemDocument& item, const char* element);

// Returns its 84 bytes, likewise.
fakehost::Bytes monthlyValue(uint32_t startOffset, uint32_t endOffset);

// Adds the inner elements of addDaily(), for a recurrence element that the test opens itself.
fakehost::ItemDocument& addDailyContents(fakehost::ItemDocument& item);

// Extracts the item broken after each event in turn. `element` is its recurrence, made by
// addDaily(): only a break between its opening tag and the interval's closing tag must fail.
void expectOnlyABrokenRecurrenceFails(const fakehost::ItemDocument& item, const char* element);

// A writer with a recurrence, its members open.
template <class Writer> class OpenRecurringWriter : public OpenWriter<Writer> {
public:
    using OpenWriter<Writer>::OpenWriter;

    using Writer::endText;
    using Writer::hasRecurrence;
    using Writer::startText;
};

#endif
