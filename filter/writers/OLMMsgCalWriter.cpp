#include "filter/writers/OLMMsgCalWriter.h"

#include "filter/core/Date.h"
#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
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

// Returns the position after the first `unit` in the text, or 0.
int afterFirst(const qor::WString& text, uint16_t unit) {
    for (int position = 0; position < text.length(); ++position) {
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): set up to the length
        if (text.value()[position] == unit) {
            return position + 1;
        }
    }
    return 0;
}

// Returns the low 32 bits of the number at `position`. Sums and products of them wrap.
uint32_t numberAt(const qor::WString& text, int position) {
    return static_cast<uint32_t>(text.toLong(position, nullptr, 10));
}

// Reads the offset after the first "+", or after the first "-" when the text has no "+". Without a
// sign `offset` keeps its value. The minutes are after the first ":" of the text, even when that is
// before the sign, and at the start of the text without a ":".
void readOffset(const qor::WString& text, int32_t& offset) {
    const int afterPlus = afterFirst(text, u'+');
    const int afterSign = afterPlus != 0 ? afterPlus : afterFirst(text, u'-');
    if (afterSign == 0) {
        return;
    }
    const uint32_t hours = numberAt(text, afterSign) * qor::minutesPerHour;
    const uint32_t sum = hours + numberAt(text, afterFirst(text, u':'));
    offset = static_cast<int32_t>(afterPlus != 0 ? sum : 0 - sum);
}

} // namespace

unsigned int OLMMsgCalWriter::initilizeWriter(OLMXMLParser& parser) {
    parser.addTags(calTags.data(), calTags.size()); // the status is ignored
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
    case PidTagSensitivity:
        handleSensitivity(parser);
        return true;
    case PidTagStartDate:
        handleStartDates(parser);
        return true;
    case PidTagEndDate:
        handleEndDates(parser);
        return true;
    case PidLidBusyStatus:
        handleStatus(parser);
        return true;
    case PidLidLocation:
        handleLocation(parser);
        return true;
    case PidLidAppointmentSubType:
        handleAllDay(parser);
        return true;
    case PidLidReminderDelta:
        handleReminderDelta(parser);
        return true;
    case PidLidReminderTime:
        handleReminderTime(parser);
        return true;
    case PidLidReminderSet:
        handleHasReminder(parser);
        return true;
    default:
        return OLMMsgRecurringWriter::handlePropSpecial(tag, parser);
    }
}

// Unlike an end, a start without text still maps its named property.
void OLMMsgCalWriter::handleStartDates(OLMXMLParser& parser) {
    const unsigned int namedTag = namedProps.mapNamedProp(PidLidAppointmentStartWhole);
    if (parser.content(startText) != 0) {
        addTwice(namedTag, PidTagStartDate, startText);
    }
}

void OLMMsgCalWriter::handleEndDates(OLMXMLParser& parser) {
    if (parser.content(endText) != 0) {
        addTwice(namedProps.mapNamedProp(PidLidAppointmentEndWhole), PidTagEndDate, endText);
    }
}

void OLMMsgCalWriter::handleReminderTime(OLMXMLParser& parser) {
    const uint64_t time = convertDateProp(parser);
    addNamedProperty(PidLidReminderTime, time);
}

void OLMMsgCalWriter::handleReminderDelta(OLMXMLParser& parser) {
    const auto seconds = static_cast<uint64_t>(readNumber(parser));
    addNamedProperty(PidLidReminderDelta, seconds / secondsPerMinute);
}

void OLMMsgCalWriter::handleHasReminder(OLMXMLParser& parser) {
    const bool isSet = readTruth(parser);
    addNamedProperty(PidLidReminderSet, isSet ? 1 : 0);
}

void OLMMsgCalWriter::handleLocation(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    createStringProp(namedProps.mapNamedProp(PidLidLocation), text);
}

void OLMMsgCalWriter::handleSensitivity(OLMXMLParser& parser) {
    if (readNumber(parser) == privateAppointment) {
        addProperty(PidTagSensitivity, sensitivityPrivate);
    }
}

void OLMMsgCalWriter::handleStatus(OLMXMLParser& parser) {
    const BusyStatus status = busyStatusOf(readNumber(parser));
    addNamedProperty(PidLidBusyStatus, status);
}

void OLMMsgCalWriter::handleAllDay(OLMXMLParser& parser) {
    if (readTruth(parser)) {
        addNamedProperty(PidLidAppointmentSubType, 1);
    }
}

void OLMMsgCalWriter::handleTimeZone(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    createNamedStringProp(PidLidTimeZoneDescription, text);
    readOffset(text, timeZoneOffset);
}

void OLMMsgCalWriter::parseAndWriteRecur(OLMXMLParser& parser) {
    writeRecurrence(parser, PidLidAppointmentRecur, CalRecurrence, timeZoneOffset);
}

void OLMMsgCalWriter::addTwice(unsigned int namedTag, unsigned int tag, const qor::WString& text) {
    const uint64_t time = convertDateProp(text);
    addProperty(namedTag, time);
    addProperty(tag, time);
}
