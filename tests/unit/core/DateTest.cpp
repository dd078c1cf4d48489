#include "filter/core/Date.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "filter/core/WString.h"
#include "tests/unit/core/IntegerEnds.h"

namespace {

// 1601-01-01T00:00:01Z in milliseconds since 1970: "no date".
constexpr int64_t noDate = -11644473599000;

constexpr int64_t day20180621 = 1529539200000;

// Passes the text in a block of exactly its size.
int64_t timeOf(const std::string& text) {
    const qor::WString wide(text.c_str());
    const std::vector<uint16_t> exact(wide.value(), wide.value() + wide.length() + 1);
    return qor::Date(qor::Date::iso8601ToJulian(exact.data())).getTime();
}

int64_t timeOfFields(int year, int month, int day, int hour, int minute, int second,
                     int millisecond) {
    return qor::Date(
               qor::Date::calendarDateToJulian(year, month, day, hour, minute, second, millisecond))
        .getTime();
}

std::vector<int> fieldsOf(double julian) {
    _SYSTEMTIME fields;
    std::memset(&fields, 0xEE, sizeof fields);
    qor::Date::julianToSystemTime(julian, fields);
    return {fields.wYear, fields.wMonth,  fields.wDayOfWeek, fields.wDay,
            fields.wHour, fields.wMinute, fields.wSecond,    fields.wMilliseconds};
}

struct TextCase {
    const char* text;
    int64_t time;
};

void PrintTo(const TextCase& row, std::ostream* out) {
    *out << '"' << row.text << '"';
}

class DateTexts : public testing::TestWithParam<TextCase> {};
class TextsThatAreNotADate : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(DateTexts, HaveTheirTime) {
    EXPECT_EQ(timeOf(GetParam().text), GetParam().time);
}

TEST_P(TextsThatAreNotADate, AllHaveTheTimeOfNoDate) {
    EXPECT_EQ(timeOf(GetParam()), noDate);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(DaysAndTimes, DateTexts, testing::Values(
    TextCase{"2018-06-21",                     day20180621},
    TextCase{"2018-06-21T00:39",               1529541540000},
    TextCase{"2018-06-21T00:39:08",            1529541548000},
    TextCase{"2018-06-21 00:39:08",            1529541548000},
    TextCase{"2018-06-21 00:39",               1529541540000},
    TextCase{"1970-01-01T00:00:00",            0},
    TextCase{"1969-12-31T23:59:59.999",        -1},
    TextCase{"1601-01-01T00:00:00",            -11644473600000},
    TextCase{"0001-01-01",                     -62135596800000},
    TextCase{"9999-12-31T23:59:59.999",        253402300799999},
    TextCase{"2018-06-21T05:00:00",            1529557200000}));

INSTANTIATE_TEST_SUITE_P(Fractions, DateTexts, testing::Values(
    TextCase{"2018-06-21T00:39:08.5",          1529541548500},
    TextCase{"2018-06-21T00:39:08,5",          1529541548500},
    TextCase{"2018-06-21T00:39:08.12",         1529541548120},
    TextCase{"2018-06-21T00:39:08.123",        1529541548123},
    TextCase{"2018-06-21T00:39:08.1239999999", 1529541548123},
    TextCase{"2018-06-21T00:39:08.0009",       1529541548000},
    TextCase{"2018-06-21T00:39:08.999Z",       1529541548999},
    TextCase{"2018-06-21 00:39:08,25+01:00",   1529537948250}));

INSTANTIATE_TEST_SUITE_P(Zones, DateTexts, testing::Values(
    TextCase{"2018-06-21T00:39:08Z",           1529541548000},
    TextCase{"2018-06-21T02:39:08+02:00",      1529541548000},
    TextCase{"2018-06-21T02:39:08+0200",       1529541548000},
    TextCase{"2018-06-21T02:39:08+02",         1529541548000},
    TextCase{"2018-06-20T17:39:08-07:00",      1529541548000},
    TextCase{"2018-06-20T17:39:08-0700",       1529541548000},
    TextCase{"2018-06-20T17:39:08-07",         1529541548000},
    TextCase{"2018-06-21T06:09:08+05:30",      1529541548000},
    TextCase{"2018-06-21T00:39+00:00",         1529541540000},
    TextCase{"2018-06-21T00:39-00:00",         1529541540000},
    TextCase{"2018-06-21T00:39Z",              1529541540000},
    TextCase{"2018-06-21Z",                    day20180621},
    TextCase{"2018-06-21+02:00",               day20180621 - 7200000},
    TextCase{"2018-06-21-02:00",               day20180621 + 7200000},
    TextCase{"2018-06-21-0200",                day20180621 + 7200000},
    TextCase{"2018-06-21-02",                  day20180621 + 7200000},
    TextCase{"2018-06-21T00:00:00+23:59",      day20180621 - 86340000},
    TextCase{"2018-06-21T00:00:00-23:59",      day20180621 + 86340000},
    TextCase{"0001-01-01T00:00:00+01:00",      -62135596800000 - 3600000},
    TextCase{"9999-12-31T23:59:59-01:00",      253402300799000 + 3600000}));

INSTANTIATE_TEST_SUITE_P(CompactForms, DateTexts, testing::Values(
    TextCase{"20180621",                       day20180621},
    TextCase{"20180621T003908",                1529541548000},
    TextCase{"20180621T003908Z",               1529541548000},
    TextCase{"20180621T003908.5",              1529541548500},
    TextCase{"20180621T003908,123456Z",        1529541548123},
    TextCase{"20180621T023908+02:00",          1529541548000},
    TextCase{"20180621T023908+0200",           1529541548000},
    TextCase{"20180620T173908-07",             1529541548000}));

INSTANTIATE_TEST_SUITE_P(EdgesOfTheDay, DateTexts, testing::Values(
    TextCase{"2018-06-21T24:00",               1529625600000},
    TextCase{"2018-06-21T24:00:00",            1529625600000},
    TextCase{"2018-06-21T24:00:00.000",        1529625600000},
    TextCase{"20180621T240000",                1529625600000},
    TextCase{"2018-12-31T24:00:00Z",           1546300800000},
    TextCase{"2016-12-31T23:59:60",            1483228800000},
    TextCase{"2016-12-31T23:59:60.250Z",       1483228800250},
    TextCase{"2018-06-21T00:38:60",            1529541540000},
    TextCase{"9999-12-31T23:59:60",            253402300800000},
    TextCase{"9999-12-31T24:00:00",            253402300800000}));

INSTANTIATE_TEST_SUITE_P(LeapDays, DateTexts, testing::Values(
    TextCase{"2000-02-29",                     951782400000},
    TextCase{"2004-02-29",                     1078012800000},
    TextCase{"1900-03-01",                     -2203891200000},
    TextCase{"2100-02-28",                     4107456000000}));

INSTANTIATE_TEST_SUITE_P(WhiteSpaceAround, DateTexts, testing::Values(
    TextCase{"  2018-06-21T00:39:08  ",        1529541548000},
    TextCase{"\t\n\v\f\r 2018-06-21\r\n",      day20180621},
    TextCase{" 2018-06-21 00:39:08 ",          1529541548000},
    TextCase{"2018-06-21 ",                    day20180621}));

INSTANTIATE_TEST_SUITE_P(NotTheForm, TextsThatAreNotADate, testing::Values(
    "", " ", "soon", "2018", "2018-06", "201806", "2018-6-21", "2018-06-2", "18-06-21",
    "02018-06-21", "12018-06-21", "+2018-06-21", "-2018-06-21", "2018/06/21", "21.06.2018", "2018-06-211", "201806211",
    "2018-06-21T", "2018-06-21T ", "2018-06-21T00", "2018-06-21T00:", "2018-06-21T00:3", "2018-06-21T00:39:",
    "2018-06-21T00:39:8", "2018-06-21T0:39:08", "2018-06-21t00:39:08", "2018-06-21  00:39:08",
    "2018-06-21_00:39:08", "2018-06-21T00:39:08.", "2018-06-21T00:39:08,", "2018-06-21T00:39:08.Z",
    "2018-06-21T00:39:08.5.5", "2018-06-21T00:39.5", "2018-06-21T00:39:08:00", "2018-06-21T-1:39:08",
    "2018-06-21T00:39:08 x", "x2018-06-21", "2018-06-21T00:39:08\xC2\xA0"));

INSTANTIATE_TEST_SUITE_P(WrongZones, TextsThatAreNotADate, testing::Values(
    "2018-06-21T00:39:08z", "2018-06-21T00:39:08ZZ", "2018-06-21T00:39:08Z+01:00", "2018-06-21T00:39:08 Z",
    "2018-06-21T00:39:08 +01:00", "2018-06-21T00:39:08+", "2018-06-21T00:39:08+1", "2018-06-21T00:39:08+1:00",
    "2018-06-21T00:39:08+01:", "2018-06-21T00:39:08+01:0", "2018-06-21T00:39:08+010", "2018-06-21T00:39:08+01:000",
    "2018-06-21T00:39:08+24:00", "2018-06-21T00:39:08-24", "2018-06-21T00:39:08+23:60", "2018-06-21T00:39:08UTC",
    "2018-06-21T00:39:08+01:00:00", "2018-06-21z", "2018-06-21 Z",
    "20180621Z", "20180621+02:00", "20180621-0200", "20180621+02"));

INSTANTIATE_TEST_SUITE_P(MixedForms, TextsThatAreNotADate, testing::Values(
    "2018-0621", "201806-21", "2018-06-21T003908", "2018-06-21T0039", "20180621T00:39:08", "20180621T00:39",
    "20180621T0039", "20180621T00", "20180621T", "20180621 003908", "20180621t003908", "20180621003908"));

INSTANTIATE_TEST_SUITE_P(FieldsThatAreNotReal, TextsThatAreNotADate, testing::Values(
    "0000-01-01", "00000101", "2018-00-21", "2018-13-21", "2018-06-00", "2018-06-31", "2018-01-32", "2018-04-31",
    "2018-02-29", "1900-02-29", "2100-02-29", "2000-02-30", "20180231",
    "2018-06-21T25:00:00", "2018-06-21T24:00:01", "2018-06-21T24:01:00", "2018-06-21T24:00:00.001",
    "2018-06-21T24:00:60", "2018-06-21T00:60:00", "2018-06-21T00:00:61", "2018-06-21T99:99:99"));
// clang-format on

TEST(DateTest, NullIsNotADate) {
    EXPECT_EQ(qor::Date(qor::Date::iso8601ToJulian(nullptr)).getTime(), noDate);
}

TEST(DateTest, NoDateIsOneSecondIntoTheYear1601) {
    const uint16_t text[] = {'x', 0};

    EXPECT_EQ(fieldsOf(qor::Date::iso8601ToJulian(text)),
              (std::vector<int>{1601, 1, 1, 1, 0, 0, 1, 0}));
}

TEST(DateTest, EveryTruncatedTextIsReadWithinItsBounds) {
    const std::string text = " 2018-06-21T00:39:08.123+02:00";
    for (size_t length = 0; length <= text.size(); ++length) {
        const std::string cut = text.substr(0, length);
        const bool isDate = length == 11 || length == 17 || length == 20 ||
                            (length >= 22 && length <= 24) || length == 27 || length >= 30;
        EXPECT_EQ(timeOf(cut) != noDate, isDate) << cut;
    }
}

TEST(DateTest, LongTextsAreReadInOnePass) {
    const std::string digits(1'000'000, '9');
    const std::string spaces(1'000'000, ' ');

    EXPECT_EQ(timeOf(digits), noDate);
    EXPECT_EQ(timeOf("2018-06-21T00:39:08.1" + digits + "Z"), 1529541548199);
    EXPECT_EQ(timeOf(spaces + "2018-06-21" + spaces), day20180621);
    EXPECT_EQ(timeOf(spaces), noDate);
}

TEST(DateTest, LastDayOfEveryMonthIsKnown) {
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
        const std::string start =
            std::string("2019-") + (month < 10 ? "0" : "") + std::to_string(month) + "-";
        const int length = lengths[month - 1];
        EXPECT_NE(timeOf(start + std::to_string(length)), noDate) << start;
        EXPECT_EQ(timeOf(start + std::to_string(length + 1)), noDate) << start;
    }
}

TEST(DateTest, DateReturnsTheJulianDateItWasMadeFrom) {
    EXPECT_EQ(qor::Date(2451545.25).julian(), 2451545.25);
}

TEST(DateTest, KnownDatesHaveTheirJulianDates) {
    EXPECT_EQ(qor::Date::calendarDateToJulian(2000, 1, 1, 12, 0, 0, 0), 2451545.0);
    EXPECT_EQ(qor::Date::calendarDateToJulian(1970, 1, 1, 0, 0, 0, 0), 2440587.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(1858, 11, 17, 0, 0, 0, 0), 2400000.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(1601, 1, 1, 0, 0, 0, 0), 2305813.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(1582, 10, 15, 0, 0, 0, 0), 2299160.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(1, 1, 1, 0, 0, 0, 0), 1721425.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(9999, 12, 31, 0, 0, 0, 0), 5373483.5);
    EXPECT_EQ(qor::Date::calendarDateToJulian(-4713, 11, 24, 12, 0, 0, 0), 0.0);
    EXPECT_EQ(qor::Date::calendarDateToJulian(2018, 6, 21, 18, 0, 0, 0), 2458291.25);
}

TEST(DateTest, CalendarHasNoGapIn1582) {
    EXPECT_EQ(qor::Date::calendarDateToJulian(1582, 10, 15, 0, 0, 0, 0) -
                  qor::Date::calendarDateToJulian(1582, 10, 4, 0, 0, 0, 0),
              11.0);
}

TEST(DateTest, MonthsOverflowIntoOtherYears) {
    const int64_t january2019 = timeOfFields(2019, 1, 21, 5, 0, 0, 0);

    EXPECT_EQ(timeOfFields(2018, 13, 21, 5, 0, 0, 0), january2019);
    EXPECT_EQ(timeOfFields(2017, 25, 21, 5, 0, 0, 0), january2019);
    EXPECT_EQ(timeOfFields(2020, -11, 21, 5, 0, 0, 0), january2019);
    EXPECT_EQ(timeOfFields(2019, 0, 21, 5, 0, 0, 0), timeOfFields(2018, 12, 21, 5, 0, 0, 0));
    EXPECT_EQ(timeOfFields(2016, 14, 29, 0, 0, 0, 0), timeOfFields(2017, 3, 1, 0, 0, 0, 0));
}

TEST(DateTest, OtherFieldsOverflowToo) {
    EXPECT_EQ(timeOfFields(2018, 6, 0, 0, 0, 0, 0), timeOfFields(2018, 5, 31, 0, 0, 0, 0));
    EXPECT_EQ(timeOfFields(2018, 6, 31, 0, 0, 0, 0), timeOfFields(2018, 7, 1, 0, 0, 0, 0));
    EXPECT_EQ(timeOfFields(2018, 6, 21, 24, 0, 0, 0), 1529625600000);
    EXPECT_EQ(timeOfFields(2018, 6, 21, 0, -1, 0, 0), day20180621 - 60000);
    EXPECT_EQ(timeOfFields(2018, 6, 21, 0, 0, 90, 0), day20180621 + 90000);
    EXPECT_EQ(timeOfFields(2018, 6, 21, 0, 0, 0, -1), day20180621 - 1);
    EXPECT_EQ(timeOfFields(1970, 1, 1, -48, 2 * 24 * 60, 0, 1), 1);
}

TEST(DateTest, AnyFieldsMakeAFiniteDate) {
    // 365.2425 days per year since the first day of the year 0, 1721059.5.
    EXPECT_NEAR(qor::Date::calendarDateToJulian(highest, 1, 1, 0, 0, 0, 0), 784354016998.9, 2);
    EXPECT_NEAR(qor::Date::calendarDateToJulian(lowest, 1, 1, 0, 0, 0, 0), -784350575245.1, 2);
    for (const int extreme : {lowest, highest}) {
        const double julian = qor::Date::calendarDateToJulian(extreme, extreme, extreme, extreme,
                                                              extreme, extreme, extreme);
        EXPECT_TRUE(std::isfinite(julian));
        EXPECT_EQ(julian > 0, extreme > 0);
        (void)fieldsOf(julian);
        EXPECT_NE(timeOfFields(1970, extreme, 1, 0, 0, 0, 0), 0);
        EXPECT_NE(timeOfFields(1970, 1, extreme, 0, 0, 0, 0), 0);
    }
    EXPECT_EQ(timeOfFields(1970, 1, 1, highest, 0, 0, 0), highest * int64_t{3600000});
    EXPECT_EQ(timeOfFields(1970, 1, 1, 0, lowest, 0, 0), lowest * int64_t{60000});
    EXPECT_EQ(timeOfFields(1970, 1, 1, 0, 0, highest, 0), highest * int64_t{1000});
    EXPECT_EQ(timeOfFields(1970, 1, 1, 0, 0, 0, lowest), lowest);
}

TEST(DateTest, TimeIsTheNearestMillisecond) {
    constexpr double millisecond = 1.0 / 86400000;

    EXPECT_EQ(qor::Date(2440587.5 + 1.4 * millisecond).getTime(), 1);
    EXPECT_EQ(qor::Date(2440587.5 + 1.6 * millisecond).getTime(), 2);
    EXPECT_EQ(qor::Date(2440587.5 - 1.4 * millisecond).getTime(), -1);
    EXPECT_EQ(qor::Date(2440587.5 - 1.6 * millisecond).getTime(), -2);
}

TEST(DateTest, TimeOutOfRangeIsClampedToTheRange) {
    EXPECT_EQ(qor::Date(1e300).getTime(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(qor::Date(-1e300).getTime(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(qor::Date(std::numeric_limits<double>::infinity()).getTime(),
              std::numeric_limits<int64_t>::max());
    EXPECT_EQ(qor::Date(-std::numeric_limits<double>::infinity()).getTime(),
              std::numeric_limits<int64_t>::min());
    EXPECT_EQ(qor::Date(std::numeric_limits<double>::quiet_NaN()).getTime(), 0);
}

TEST(DateTest, EverySecondOfADayIsExact) {
    for (int second = 0; second < 86400; ++second) {
        const double julian = qor::Date::calendarDateToJulian(2018, 6, 21, 0, 0, second, 0);
        ASSERT_EQ(qor::Date(julian).getTime(), day20180621 + second * int64_t{1000});
        ASSERT_EQ(fieldsOf(julian), (std::vector<int>{2018, 6, 4, 21, second / 3600,
                                                      second / 60 % 60, second % 60, 0}));
    }
}

TEST(DateTest, EveryMillisecondOfAMinuteIsExactInTheYear9999) {
    for (int millisecond = 0; millisecond < 60000; ++millisecond) {
        ASSERT_EQ(timeOfFields(9999, 12, 31, 23, 59, 0, millisecond),
                  253402300740000 + millisecond);
    }
}

TEST(DateTest, SystemTimeHasAllFields) {
    EXPECT_EQ(fieldsOf(2451545.0), (std::vector<int>{2000, 1, 6, 1, 12, 0, 0, 0}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(2018, 6, 21, 5, 0, 0, 0)),
              (std::vector<int>{2018, 6, 4, 21, 5, 0, 0, 0}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(1969, 12, 31, 23, 59, 59, 999)),
              (std::vector<int>{1969, 12, 3, 31, 23, 59, 59, 999}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(2000, 2, 29, 1, 2, 3, 4)),
              (std::vector<int>{2000, 2, 2, 29, 1, 2, 3, 4}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(1, 1, 1, 0, 0, 0, 0)),
              (std::vector<int>{1, 1, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(9999, 12, 31, 23, 59, 59, 999)),
              (std::vector<int>{9999, 12, 5, 31, 23, 59, 59, 999}));
    EXPECT_EQ(fieldsOf(qor::Date::calendarDateToJulian(2017, 1, 1, 0, 0, 0, 0)),
              (std::vector<int>{2017, 1, 0, 1, 0, 0, 0, 0}));
}

// Compares with a calendar that counts day by day.
TEST(DateTest, EveryDayOfNineCenturiesFollowsThePreviousOne) {
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int year = 1600;
    int month = 1;
    int day = 1;
    int dayOfWeek = 6;
    for (double julian = 2305447.5; year < 2500; julian += 1) {
        ASSERT_EQ(qor::Date::calendarDateToJulian(year, month, day, 0, 0, 0, 0), julian);
        ASSERT_EQ(fieldsOf(julian), (std::vector<int>{year, month, dayOfWeek, day, 0, 0, 0, 0}));
        const bool isLeap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
        const int length = lengths[month - 1] + (isLeap && month == 2 ? 1 : 0);
        dayOfWeek = (dayOfWeek + 1) % 7;
        if (++day > length) {
            day = 1;
            if (++month > 12) {
                month = 1;
                ++year;
            }
        }
    }
}

TEST(DateTest, SystemTimeCarriesARoundedMillisecondIntoTheNextMinute) {
    // Less than half a millisecond before 05:00.
    const double fiveOClock = qor::Date::calendarDateToJulian(2018, 6, 21, 5, 0, 0, 0);

    EXPECT_EQ(fieldsOf(fiveOClock - 0.4 / 86400000),
              (std::vector<int>{2018, 6, 4, 21, 5, 0, 0, 0}));
    EXPECT_EQ(fieldsOf(fiveOClock - 0.6 / 86400000),
              (std::vector<int>{2018, 6, 4, 21, 4, 59, 59, 999}));
}
