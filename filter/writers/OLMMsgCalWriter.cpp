#include "filter/writers/OLMMsgCalWriter.h"

#include "filter/core/Date.h"
#include "filter/writers/OLMMsgCalTags.h"

namespace {

constexpr uint64_t secondsPerMinute = 60;

constexpr int64_t privateAppointment = 1;
constexpr uint64_t sensitivityPrivate = 2;

enum BusyStatus : uint64_t {
    BusyFree = 0,
    BusyTentative = 1,
    BusyBusy = 2,
    BusyAway = 3,
};

BusyStatus busyStatusOf(int64_t status) {
    switch (status) {
    case 1:
        return BusyFree;
    case 2:
        return BusyTentative;
    case 3:
        return BusyAway;
    default:
        return BusyBusy;
    }
}

int64_t readNumber(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    return text.toLong(0, nullptr, 10);
}

bool readTruth(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    return text.toBoolean(0, nullptr);
}

// The position behind the first `unit` in the text; 0 when there is none.
int behindFirst(const qor::WString& text, uint16_t unit) {
    for (int position = 0; position < text.length(); ++position) {
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): set up to the length
        if (text.value()[position] == unit) {
            return position + 1;
        }
    }
    return 0;
}

// Low 32 bits of the number there: sums and products of them wrap, as the offset does.
uint32_t numberAt(const qor::WString& text, int position) {
    return static_cast<uint32_t>(text.toLong(position, nullptr, 10));
}

// Reads the offset behind the first "+", or behind the first "-" where there is no "+" at all;
// without either `offset` stays. The minutes stand behind the first ":" of the text, also when that
// is ahead of the sign, and at the text's start when there is none.
void readOffset(const qor::WString& text, int32_t& offset) {
    const int behindPlus = behindFirst(text, u'+');
    const int behindSign = behindPlus != 0 ? behindPlus : behindFirst(text, u'-');
    if (behindSign == 0) {
        return;
    }
    const uint32_t hours = numberAt(text, behindSign) * qor::minutesPerHour;
    const uint32_t sum = hours + numberAt(text, behindFirst(text, u':'));
    offset = static_cast<int32_t>(behindPlus != 0 ? sum : 0 - sum);
}

} // namespace

unsigned int OLMMsgCalWriter::initilizeWriter(OLMXMLParser& parser) {
    parser.addTags(calTags.data(), calTags.size()); // what comes of it isn't asked
    OLMMsgWriter::initilizeWriter(parser);
    createRequiredProps("IPM.Appointment");
    expectedProps = calTags.size();
    return 0;
}

bool OLMMsgCalWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case CalCategories:
        handleCategories(parser, CalCategories);
        return true;
    case CalAttendees:
        handleAttendees(parser);
        return true;
    case CalOrganizer:
        addOrganizer(parser);
        return true;
    case CalRecurrence:
        deferRecurrence(tag, parser);
        return true;
    case CalTimeZone:
        handleTimeZone(parser);
        return true;
    case 0x00360003:
        handleSensitivity(parser);
        return true;
    case 0x00600040:
        handleStartDates(parser);
        return true;
    case 0x00610040:
        handleEndDates(parser);
        return true;
    case 0x82050003:
        handleStatus(parser);
        return true;
    case 0x8208001F:
        handleLocation(parser);
        return true;
    case 0x8215000B:
        handleAllDay(parser);
        return true;
    case 0x85010003:
        handleReminderDelta(parser);
        return true;
    case 0x85020040:
        handleReminderTime(parser);
        return true;
    case 0x8503000B:
        handleHasReminder(parser);
        return true;
    default:
        return OLMMsgRecurringWriter::handlePropSpecial(tag, parser);
    }
}

// Unlike the end, a start without text takes a number among the named properties all the same.
void OLMMsgCalWriter::handleStartDates(OLMXMLParser& parser) {
    const unsigned int namedTag = namedProps.mapNamedProp(0x820D0040);
    if (parser.content(startText) != 0) {
        addTwice(namedTag, 0x00600040, startText);
    }
}

void OLMMsgCalWriter::handleEndDates(OLMXMLParser& parser) {
    if (parser.content(endText) != 0) {
        addTwice(namedProps.mapNamedProp(0x820E0040), 0x00610040, endText);
    }
}

void OLMMsgCalWriter::handleReminderTime(OLMXMLParser& parser) {
    const uint64_t time = convertDateProp(parser);
    addNamedProperty(0x85020040, time);
}

void OLMMsgCalWriter::handleReminderDelta(OLMXMLParser& parser) {
    const auto seconds = static_cast<uint64_t>(readNumber(parser));
    addNamedProperty(0x85010003, seconds / secondsPerMinute);
}

void OLMMsgCalWriter::handleHasReminder(OLMXMLParser& parser) {
    const bool isSet = readTruth(parser);
    addNamedProperty(0x8503000B, isSet ? 1 : 0);
}

void OLMMsgCalWriter::handleLocation(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    createStringProp(namedProps.mapNamedProp(0x8208001F), text);
}

void OLMMsgCalWriter::handleSensitivity(OLMXMLParser& parser) {
    if (readNumber(parser) == privateAppointment) {
        addProperty(0x00360003, sensitivityPrivate);
    }
}

void OLMMsgCalWriter::handleStatus(OLMXMLParser& parser) {
    const BusyStatus status = busyStatusOf(readNumber(parser));
    addNamedProperty(0x82050003, status);
}

void OLMMsgCalWriter::handleAllDay(OLMXMLParser& parser) {
    if (readTruth(parser)) {
        addNamedProperty(0x8215000B, 1);
    }
}

void OLMMsgCalWriter::handleTimeZone(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    createNamedStringProp(0x8234001F, text);
    readOffset(text, timeZoneOffset);
}

void OLMMsgCalWriter::parseAndWriteRecur(OLMXMLParser& parser) {
    writeRecurrence(parser, 0x82160102, CalRecurrence, timeZoneOffset);
}

void OLMMsgCalWriter::addTwice(unsigned int namedTag, unsigned int tag, const qor::WString& text) {
    const uint64_t time = convertDateProp(text);
    addProperty(namedTag, time);
    addProperty(tag, time);
}
