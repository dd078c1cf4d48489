#include "filter/recurrence/RecurrenceValue.h"

#include "filter/storage/OLMMsgWriter.h"

namespace {

constexpr uint16_t readerVersion = 0x3004; // also the version of the writer
constexpr uint32_t readerVersion2 = 0x3006;
constexpr uint32_t writerVersion2 = 0x3009;

// Bytes before and after the part that depends on the pattern type.
constexpr uint64_t headSize = 22;
constexpr uint64_t tailSize = 54;

void writeWord(HostStream* stream, uint32_t value) {
    OLMMsgWriter::writeWordProp(stream, static_cast<uint16_t>(value));
}

void writeDword(HostStream* stream, uint32_t value) {
    OLMMsgWriter::writeDwordProp(stream, value);
}

void writeHead(HostStream* stream, const OLMRecurrence& recurrence) {
    writeWord(stream, readerVersion);
    writeWord(stream, readerVersion);
    writeWord(stream, recurrence.recurFrequency);
    writeWord(stream, recurrence.patternType);
    writeWord(stream, 0); // calendar type
    writeDword(stream, recurrence.firstDateTime);
    writeDword(stream, recurrence.period);
    writeDword(stream, 0); // sliding flag
}

// Returns the number of bytes written.
uint64_t writePattern(HostStream* stream, const OLMRecurrence& recurrence) {
    switch (recurrence.patternType) {
    case PatternWeek:
        writeDword(stream, recurrence.daysOfWeek);
        return 4;
    case PatternMonthDay:
        writeDword(stream, recurrence.dayOfMonth);
        return 4;
    case PatternMonthNth:
        writeDword(stream, recurrence.daysOfWeek);
        writeDword(stream, recurrence.weekOfMonth);
        return 8;
    default:
        return 0;
    }
}

void writeTail(HostStream* stream, const OLMRecurrence& recurrence) {
    writeDword(stream, recurrence.endType);
    writeDword(stream, recurrence.occurrenceCount);
    writeDword(stream, 0); // first day of the week
    writeDword(stream, 0); // deleted instances
    writeDword(stream, 0); // modified instances
    writeDword(stream, recurrence.getStartDate());
    writeDword(stream, recurrence.getEndDate());
    writeDword(stream, readerVersion2);
    writeDword(stream, writerVersion2);
    writeDword(stream, static_cast<uint32_t>(recurrence.getStartTimeOffset()));
    writeDword(stream, static_cast<uint32_t>(recurrence.getEndTimeOffset()));
    writeWord(stream, 0);  // exceptions
    writeDword(stream, 0); // size of the first reserved block
    writeDword(stream, 0); // size of the second
}

} // namespace

uint64_t writeRecurrenceValue(HostStream* stream, const OLMRecurrence& recurrence) {
    writeHead(stream, recurrence);
    const uint64_t patternSize = writePattern(stream, recurrence);
    writeTail(stream, recurrence);
    return headSize + patternSize + tailSize;
}
