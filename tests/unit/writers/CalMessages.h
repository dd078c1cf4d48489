#ifndef OLMKIT_TESTS_UNIT_WRITERS_CALMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_CALMESSAGES_H

#include "filter/writers/OLMMsgCalWriter.h"
#include "tests/unit/writers/RecurringItems.h"

// What the tests of the calendar writer share.

class OpenCalWriter : public OpenRecurringWriter<OLMMsgCalWriter> {
public:
    using OpenRecurringWriter::OpenRecurringWriter;

    using OLMMsgCalWriter::timeZoneOffset;
};

class CalWriterTest : public WriterTest<OpenCalWriter> {};

#endif
