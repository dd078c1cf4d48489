#ifndef OLMKIT_TESTS_UNIT_WRITERS_CALMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_CALMESSAGES_H

#include "filter/writers/OLMMsgCalWriter.h"
#include "tests/unit/writers/RecurringItems.h"

// What the tests of the calendar writer share.

inline constexpr const char* calRecurrenceElement = "OPFCalendarEventCopyRecurrence";

// The writer with its inside open.
class OpenCalWriter : public OpenRecurringWriter<OLMMsgCalWriter> {
public:
    using OpenRecurringWriter::OpenRecurringWriter;

    using OLMMsgCalWriter::timeZoneOffset;
};

class CalWriterTest : public RecurringWriterTest<OpenCalWriter> {};

#endif
