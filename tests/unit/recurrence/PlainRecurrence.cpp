#include "tests/unit/recurrence/PlainRecurrence.h"

#include <array>
#include <bit>
#include <cstdio>
#include <initializer_list>
#include <utility>

using fakehost::Bytes;
using fakehost::ItemDocument;
using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

namespace {

// clang-format off
constexpr PlainPattern patterns[] = {
    {"Daily",           0x200A, 0},
    {"Weekly",          0x200B, 1},
    {"RelativeMonthly", 0x200C, 3},
    {"AbsoluteMonthly", 0x200C, 2},
    {"RelativeYearly",  0x200D, 3},
    {"AbsoluteYearly",  0x200D, 2},
};

constexpr PlainEnd ends[] = {
    // never announced date   count type
    {false,  true,     true,  0,    0x2021},
    {false,  true,     true,  27,   0x2021},
    {false,  false,    false, 10,   0x2022},
    {false,  false,    true,  184,  0x2022},
    {true,   false,    false, 0,    0x2023},
    {true,   true,     true,  6,    0x2023},
};

constexpr int zones[] = {
    -720, -660, -600, -570, -540, -480, -420, -360, -300, -240, -210, -180, -120, -60,
    0,    60,   120,  180,  210,  240,  270,  300,  330,  345,  360,  390,  420,  480,
    525,  540,  570,  600,  630,  660,  720,  765,  780,  825,  840,
};
// clang-format on

static_assert(std::endian::native == std::endian::little);

constexpr sys_days firstOf1601 = sys_days(year(1601) / 1 / 1);
constexpr int minutesOfDay = 24 * 60;
constexpr uint32_t farFuture = 0x5AE980DF; // the end date of an endless recurrence

// The elements of the mask's bits, from bit 0.
constexpr std::array<const char*, 7> dayNames = {"sunday",   "monday", "tuesday", "wednesday",
                                                 "thursday", "friday", "saturday"};

uint32_t minutesSince1601(sys_days day, int minute = 0) {
    return static_cast<uint32_t>((day - firstOf1601).count() * minutesOfDay + minute);
}

std::string isoText(int64_t minutesSince1970) {
    const std::chrono::sys_time<std::chrono::minutes> time{std::chrono::minutes(minutesSince1970)};
    const auto day = std::chrono::floor<days>(time);
    const year_month_day date(day);
    const auto minute = static_cast<int>((time - day).count());
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:00", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  minute / 60, minute % 60);
    return text;
}

uint32_t plainPeriod(const PlainRecurrence& plain) {
    switch (plain.pattern.frequency) {
    case 0x200A:
        return plain.interval * minutesOfDay;
    case 0x200D:
        return 12; // months
    default:
        return plain.interval;
    }
}

// Returns FirstDateTime of MS-OXOCAL 2.2.1.44.1.
uint32_t plainFirstDateTime(const PlainRecurrence& plain) {
    if (plain.pattern.type == 3) {
        return 0;
    }
    if (plain.pattern.frequency == 0x200A) {
        const auto day = (plain.firstDay - firstOf1601).count();
        return static_cast<uint32_t>(day % plain.interval * minutesOfDay);
    }
    if (plain.pattern.frequency == 0x200B) {
        const std::chrono::weekday weekday(plain.firstDay);
        const sys_days sunday = plain.firstDay - days(weekday.c_encoding());
        const auto day = (sunday - firstOf1601).count();
        return static_cast<uint32_t>(day % (int64_t{7} * plain.interval) * minutesOfDay);
    }
    if (plain.month == 0) {
        return 0;
    }
    return minutesSince1601(sys_days(year(1601) / static_cast<int>(plain.month) / 1));
}

// A list of little-endian numbers.
class NumberList {
public:
    NumberList() { bytes.reserve(84); }

    void words(std::initializer_list<uint16_t> numbers) { append(numbers); }
    void dwords(std::initializer_list<uint32_t> numbers) { append(numbers); }

    Bytes bytes;

private:
    template <class Number> void append(std::initializer_list<Number> numbers) {
        const auto* first = reinterpret_cast<const uint8_t*>(numbers.begin());
        bytes.insert(bytes.end(), first, first + numbers.size() * sizeof(Number));
    }
};

void addPart(NumberList& list, const PlainRecurrence& plain) {
    switch (plain.pattern.type) {
    case 1:
        list.dwords({plain.days});
        break;
    case 2:
        list.dwords({plain.dayOfMonth});
        break;
    case 3:
        list.dwords({plain.days, plain.week});
        break;
    default:
        break;
    }
}

const char* truth(bool isTrue) {
    return isTrue ? "1" : "0";
}

// Adds all ten elements, in the order of their names.
void addDays(ItemDocument& document, uint32_t mask) {
    document.open("OPFRecurrencePatternDaysOfWeek").element("allDays", truth(mask == 0x7F));
    for (const int day : {5, 1, 6, 0, 4, 2, 3}) {
        document.element(dayNames[day], truth((mask >> day & 1) != 0));
    }
    document.element("weekdays", truth((mask & 0x3E) == 0x3E))
        .element("weekenddays", truth((mask & 0x41) == 0x41))
        .close();
}

void addEnd(ItemDocument& document, const PlainRecurrence& plain) {
    if (plain.end.hasDate) {
        document.element("OPFRecurrenceCopyEndDate",
                         isoText(universalMinute(plain, plain.lastDay, plain.lastMinute)));
    }
}

} // namespace

std::span<const PlainPattern> plainPatterns() {
    return patterns;
}

std::span<const PlainEnd> plainEnds() {
    return ends;
}

std::span<const int> plainZones() {
    return zones;
}

PlainRecurrence plainRecurrence(const PlainPattern& pattern, const PlainEnd& end, int zone,
                                bool isDaylightSaving, uint32_t days) {
    // All of these are Sundays.
    constexpr sys_days summer = sys_days(year(2019) / 7 / 14);
    constexpr sys_days winters[] = {sys_days(year(2019) / 1 / 13), sys_days(year(2024) / 2 / 25),
                                    sys_days(year(2038) / 1 / 17), sys_days(year(1970) / 1 / 4)};
    PlainRecurrence plain{};
    plain.pattern = pattern;
    plain.end = end;
    plain.zone = zone;
    plain.isDaylightSaving = isDaylightSaving;
    plain.days = days;
    plain.interval = 1 + days % 5;
    plain.week = 1 + days % 5;
    plain.dayOfMonth = 1 + days % 31;
    plain.month = days % 13;
    const int firstDay = days == 0 ? 0 : std::countr_zero(days);
    plain.firstDay = (isDaylightSaving ? summer : winters[days % 4]) + std::chrono::days(firstDay);
    plain.lastDay = plain.firstDay + std::chrono::days(7 * days);
    plain.lastMinute = static_cast<int>(days * 11);
    plain.startMinute = static_cast<int>(days * 10);
    plain.endMinute = plain.startMinute + 45;
    return plain;
}

std::optional<Bytes> plainValue(const PlainRecurrence& plain) {
    if (plain.pattern.type == 1 && plain.days == 0) {
        return std::nullopt;
    }
    const uint32_t end =
        plain.end.isAnnounced ? minutesSince1601(plain.lastDay, plain.lastMinute) : farFuture;
    NumberList list;
    list.words({0x3004, 0x3004});                          // ReaderVersion, WriterVersion
    list.words({plain.pattern.frequency});                 // RecurFrequency
    list.words({plain.pattern.type, 0});                   // PatternType, CalendarType
    list.dwords({plainFirstDateTime(plain)});              // FirstDateTime
    list.dwords({plainPeriod(plain), 0});                  // Period, SlidingFlag
    addPart(list, plain);                                  // PatternTypeSpecific
    list.dwords({plain.end.type, plain.end.count});        // EndType, OccurrenceCount
    list.dwords({0, 0, 0});                                // FirstDOW, both instance counts
    list.dwords({minutesSince1601(plain.firstDay), end});  // StartDate, EndDate
    list.dwords({0x3006, 0x3009});                         // ReaderVersion2, WriterVersion2
    list.dwords({static_cast<uint32_t>(plain.startMinute), // StartTimeOffset
                 static_cast<uint32_t>(plain.endMinute)}); // EndTimeOffset
    list.words({0});                                       // ExceptionCount
    list.dwords({0, 0});                                   // sizes of the reserved blocks
    return std::move(list.bytes);
}

int64_t universalMinute(const PlainRecurrence& plain, sys_days day, int minute) {
    const int64_t local = int64_t{day.time_since_epoch().count()} * minutesOfDay + minute;
    return local - plain.zone - (plain.isDaylightSaving ? 60 : 0);
}

ItemDocument plainDocument(const PlainRecurrence& plain) {
    ItemDocument document = recurrence();
    addEnd(document, plain);
    document.element("OPFRecurrenceCopyStartDate",
                     isoText(universalMinute(plain, plain.firstDay, 0)));
    if (plain.end.count != 0) {
        document.element("OPFRecurrenceGetOccurenceCount", std::to_string(plain.end.count));
    }
    document.element("OPFRecurrenceHasEndDate", truth(plain.end.isAnnounced))
        .element("OPFRecurrenceIsNoEnd", truth(plain.end.isNever))
        .element("OPFRecurrenceIsNumbered", truth(plain.end.count != 0))
        .open("OPFRecurrencePattern")
        .element("OPFRecurrencePatternDayOfMonth", std::to_string(plain.dayOfMonth));
    addDays(document, plain.days);
    document.element("OPFRecurrencePatternInterval", std::to_string(plain.interval));
    if (plain.month != 0) {
        document.element("OPFRecurrencePatternMonth", std::to_string(plain.month));
    }
    document
        .element("OPFRecurrencePatternType",
                 std::string("OPFRecurrencePattern") + plain.pattern.text)
        .element("OPFRecurrencePatternWeek", std::to_string(plain.week))
        .close();
    return document;
}

RecurringItem plainItem(const PlainRecurrence& plain) {
    return {isoText(universalMinute(plain, plain.firstDay, plain.startMinute)),
            isoText(universalMinute(plain, plain.firstDay, plain.endMinute)), plain.zone};
}

std::string describe(const PlainRecurrence& plain) {
    return std::string(plain.pattern.text) + ", end type " + std::to_string(plain.end.type) +
           (plain.end.isAnnounced ? " with a date" : "") + ", zone " + std::to_string(plain.zone) +
           (plain.isDaylightSaving ? " in summer" : "") + ", days " + std::to_string(plain.days) +
           ", from " + isoText(universalMinute(plain, plain.firstDay, 0));
}
