#include "filter/recurrence/OLMRecurrence.h"

#include <bit>

#include "filter/core/Exception.h"
#include "filter/recurrence/OLMRecurrenceTags.h"

namespace {

constexpr uint32_t minutesPerDay = 1440;
constexpr uint32_t minutesPerWeek = 7 * minutesPerDay;
constexpr int64_t millisecondsPerMinute = 60000;

// Minutes from 1601 to 1970.
constexpr int64_t minutesOf1970 = 194074560;

// 4500-12-31T23:59, the end of a recurrence without end ([MS-OXOCAL]).
constexpr uint32_t endlessDate = 0x5AE980DF;

constexpr uint32_t monthsPerYear = 12;
constexpr uint32_t wholeWeek = 0x7F;

struct PatternText {
    RecurFrequency frequency;
    RecurPattern pattern;
    const char* text;
};

// clang-format off
constexpr PatternText patternTexts[] = {
    {RecurDaily,   PatternDay,      "OPFRecurrencePatternDaily"},
    {RecurWeekly,  PatternWeek,     "OPFRecurrencePatternWeekly"},
    {RecurMonthly, PatternMonthNth, "OPFRecurrencePatternRelativeMonthly"},
    {RecurMonthly, PatternMonthDay, "OPFRecurrencePatternAbsoluteMonthly"},
    {RecurYearly,  PatternMonthNth, "OPFRecurrencePatternRelativeYearly"},
    {RecurYearly,  PatternMonthDay, "OPFRecurrencePatternAbsoluteYearly"},
};
// clang-format on

const qor::Date& required(const std::unique_ptr<qor::Date>& date) {
    if (date == nullptr) {
        throw qor::Exception(ErrRecurrence);
    }
    return *date;
}

// Milliseconds are unsigned here, so that no sum of them can overflow.
int64_t wholeMinutes(uint64_t milliseconds) {
    return static_cast<int64_t>(milliseconds) / millisecondsPerMinute;
}

uint64_t millisecondsOf(const qor::Date& date) {
    return static_cast<uint64_t>(date.getTime());
}

uint32_t remainderOf(uint32_t minutes, uint32_t interval) {
    if (interval == 0) {
        throw qor::Exception(ErrRecurrence);
    }
    return minutes % interval;
}

} // namespace

OLMRecurrence::OLMRecurrence(OLMXMLParser& parser, const qor::WString& start,
                             const qor::WString& end, int zoneOffset)
    : timeZoneOffset(zoneOffset) {
    if (parser.addTags(recurrenceTags.data(), recurrenceTags.size()) != 0) {
        throw qor::Exception(ErrRecurrenceTable);
    }
    itemStart = std::make_unique<qor::Date>(qor::Date::iso8601ToJulian(start.value()));
    itemEnd = std::make_unique<qor::Date>(qor::Date::iso8601ToJulian(end.value()));
}

void OLMRecurrence::parseRecurrence(OLMXMLParser& parser, unsigned int closingTag) {
    OLMXMLTag tag;
    bool isRead = false;
    do {
        isRead = parser.nextTag(tag) != 0;
        // At the end of the document the tag still has the last record, which is handled once more.
        if (!tag.isClosing()) {
            mapTagToValue(tag, parser);
        }
    } while (isRead && tag.id() != closingTag);

    if (hasEndDate) {
        required(endDate); // before any part of the value is written
    }
    adjustTimeZoneOffset();
    modifyPeriod();
    calcFirstDateTime();
}

uint32_t OLMRecurrence::getStartDate() const {
    return qorDateToRecurDate(required(startDate)) + static_cast<uint32_t>(timeZoneOffset);
}

uint32_t OLMRecurrence::getEndDate() const {
    if (!hasEndDate) {
        return endlessDate;
    }
    return qorDateToRecurDate(required(endDate)) + static_cast<uint32_t>(timeZoneOffset);
}

int64_t OLMRecurrence::getStartTimeOffset() const {
    return wholeMinutes(millisecondsOf(*itemStart) + 1 - millisecondsOf(required(startDate)));
}

int64_t OLMRecurrence::getEndTimeOffset() const {
    return wholeMinutes(millisecondsOf(*itemEnd) - millisecondsOf(required(startDate)));
}

uint32_t OLMRecurrence::qorDateToRecurDate(const qor::Date& date) const {
    return static_cast<uint32_t>(wholeMinutes(millisecondsOf(date) + 1) + minutesOf1970);
}

void OLMRecurrence::adjustTimeZoneOffset() {
    _SYSTEMTIME fields{};
    qor::Date::julianToSystemTime(required(startDate).julian(), fields);
    const int32_t minute = fields.wMinute == 29 ? 30 : fields.wMinute;

    // Only a full hour carries, and never west of Greenwich, where the minutes are negative.
    const int32_t zoneMinutes = timeZoneOffset % qor::minutesPerHour;
    const bool isCarried = zoneMinutes > 0 && minute + zoneMinutes == qor::minutesPerHour;
    const int32_t hours = fields.wHour + (isCarried ? 1 : 0) + timeZoneOffset / qor::minutesPerHour;
    const auto localHour = static_cast<uint16_t>(hours);
    if (localHour != 0 && localHour != 24) {
        const uint32_t moved = static_cast<uint32_t>(timeZoneOffset) + qor::minutesPerHour;
        timeZoneOffset = static_cast<int32_t>(moved);
    }
}

void OLMRecurrence::modifyPeriod() {
    if (recurFrequency == RecurUncounted || period == 0) {
        return;
    }
    if (recurFrequency == RecurDaily) {
        period *= minutesPerDay;
    } else if (recurFrequency == RecurYearly) {
        period = monthsPerYear;
    }
}

void OLMRecurrence::calcFirstDateTime() {
    if (patternType == PatternMonthNth) {
        firstDateTime = 0;
        return;
    }
    switch (recurFrequency) {
    case RecurDaily:
        firstDateTime = remainderOf(getStartDate(), period);
        break;
    case RecurWeekly:
        firstDateTime = calculateWeeklyFDT();
        break;
    case RecurMonthly:
    case RecurYearly:
        firstDateTime = static_cast<uint32_t>(calculateMonthlyFDT());
        break;
    default:
        break;
    }
}

uint32_t OLMRecurrence::calculateWeeklyFDT() const {
    const uint32_t days = daysOfWeek & wholeWeek;
    if (days == 0) {
        throw qor::Exception(ErrRecurrence);
    }
    // The first day of the mask is taken for the day of the start, whichever day that is.
    const auto firstDay = static_cast<uint32_t>(std::countr_zero(days));
    return remainderOf(getStartDate() - firstDay * minutesPerDay, period * minutesPerWeek);
}

int64_t OLMRecurrence::calculateMonthlyFDT() const {
    if (month == 0) {
        return 0;
    }
    constexpr int firstYear = 1601; // of recurrence dates; the year of the start does not matter
    const double days =
        qor::Date::calendarDateToJulian(firstYear, static_cast<int>(month), 1, 0, 0, 0, 0) -
        qor::Date::calendarDateToJulian(firstYear, 1, 1, 0, 0, 0, 0);
    return static_cast<int64_t>(days * minutesPerDay);
}

void OLMRecurrence::mapTagToValue(const OLMXMLTag& tag, OLMXMLParser& parser) {
    switch (tag.id()) {
    case RecurEndDate:
        endDate = std::make_unique<qor::Date>(readDateFromXML(parser));
        break;
    case RecurStartDate:
        startDate = std::make_unique<qor::Date>(readDateFromXML(parser));
        break;
    case RecurOccurrenceCount:
        occurrenceCount = readIntFromXml(parser);
        break;
    case RecurHasEndDate:
        hasEndDate = readBoolFromXml(parser);
        break;
    case RecurIsNoEnd:
        endType = transEndTypeFromXml(parser);
        break;
    case RecurDaysOfWeek:
        daysOfWeek = transDaysFromXml(parser);
        break;
    case RecurInterval:
        period = readIntFromXml(parser);
        break;
    case RecurPatternText:
        transPatternAndFreqFromXml(parser);
        break;
    case RecurWeek:
        weekOfMonth = transWeekFromXml(parser);
        break;
    case RecurMonth:
        month = readIntFromXml(parser);
        break;
    case RecurDayOfMonth:
        dayOfMonth = readIntFromXml(parser);
        break;
    default:
        break;
    }
}

double OLMRecurrence::readDateFromXML(OLMXMLParser& parser) const {
    qor::WString text;
    parser.content(text);
    return qor::Date::iso8601ToJulian(text.value());
}

uint32_t OLMRecurrence::readIntFromXml(OLMXMLParser& parser) const {
    qor::WString text;
    parser.content(text);
    return static_cast<uint32_t>(text.toLong(0, nullptr, 10));
}

bool OLMRecurrence::readBoolFromXml(OLMXMLParser& parser) const {
    return readIntFromXml(parser) != 0;
}

RecurEnd OLMRecurrence::transEndTypeFromXml(OLMXMLParser& parser) const {
    if (readBoolFromXml(parser)) {
        return EndsNever;
    }
    return hasEndDate ? EndsAtDate : EndsAfterCount;
}

uint32_t OLMRecurrence::transWeekFromXml(OLMXMLParser& parser) const {
    const uint32_t week = readIntFromXml(parser);
    return week <= 5 ? week : 0;
}

void OLMRecurrence::transPatternAndFreqFromXml(OLMXMLParser& parser) {
    qor::WString text;
    parser.content(text);
    for (const PatternText& row : patternTexts) {
        if (text.equalsIgnoreCase(row.text)) {
            recurFrequency = row.frequency;
            patternType = row.pattern;
        }
    }
}

uint32_t OLMRecurrence::transTagToDateFlag(const OLMXMLTag& tag, OLMXMLParser& parser) const {
    const bool isSet = readBoolFromXml(parser);
    if (!isSet || tag.id() < RecurAllDays || tag.id() > RecurWeekendDays) {
        return 0;
    }
    return recurrenceDayFlags[tag.id() - RecurAllDays];
}

uint32_t OLMRecurrence::transDaysFromXml(OLMXMLParser& parser) const {
    uint32_t days = 0;
    OLMXMLTag tag;
    bool isRead = false;
    do {
        isRead = parser.nextTag(tag) != 0;
        if (days != wholeWeek && !tag.isClosing()) {
            days |= transTagToDateFlag(tag, parser);
        }
    } while (isRead && tag.id() != RecurDaysOfWeek);
    return days;
}
