#include "filter/recurrence/OLMRecurrence.h"

#include <gmock/gmock.h>

#include "tests/unit/RowName.h"
#include "tests/unit/recurrence/ParsedRecurrence.h"
#include "tests/unit/storage/Thrown.h"

using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::ItemDocument;
using testing::ElementsAre;
using testing::Pair;

namespace {

constexpr unsigned int recurrenceCode = 15;
constexpr unsigned int tableCode = 0xFFFFFC18; // -1000
constexpr uint32_t endless = 1525252319;

// Returns a recurrence in which only the elements under test matter: a relative one, so that no
// derived field depends on interval or days.
ItemDocument relative() {
    return patterned("RelativeMonthly");
}

// Returns a date in universal time.
qor::Date dateOf(int year, int month, int day, int hour, int minute, int second, int millisecond) {
    return qor::Date(
        qor::Date::calendarDateToJulian(year, month, day, hour, minute, second, millisecond));
}

} // namespace

// --- Construction.

TEST(OLMRecurrenceTest, ConstructionAddsItsTagTable) {
    ParsedRecurrence recurring(recurrence());

    EXPECT_THAT(
        recurring.host.tagMaps().back(),
        ElementsAre(Pair("OPFRecurrenceCopyEndDate", 10), Pair("OPFRecurrenceCopyStartDate", 11),
                    Pair("OPFRecurrenceGetOccurenceCount", 12), Pair("OPFRecurrenceHasEndDate", 13),
                    Pair("OPFRecurrenceIsNoEnd", 14), Pair("OPFRecurrenceIsNumbered", 15),
                    Pair("OPFRecurrencePattern", 16), Pair("OPFRecurrencePatternDayOfMonth", 22),
                    Pair("OPFRecurrencePatternDaysOfWeek", 17),
                    Pair("OPFRecurrencePatternInterval", 18), Pair("OPFRecurrencePatternMonth", 21),
                    Pair("OPFRecurrencePatternType", 19), Pair("OPFRecurrencePatternWeek", 20),
                    Pair("allDays", 23), Pair("friday", 24), Pair("monday", 25),
                    Pair("saturday", 26), Pair("sunday", 27), Pair("thursday", 28),
                    Pair("tuesday", 29), Pair("wednesday", 30), Pair("weekdays", 31),
                    Pair("weekenddays", 32)));
}

TEST(OLMRecurrenceTest, RejectedTagTableThrowsWhateverTheStatus) {
    for (const int32_t status : {-1, -7, 1}) {
        SCOPED_TRACE(status);
        FakeHost host;
        host.entry("items.xml", recurrence());
        OLMXMLParser parser(host.openArchive(), 0);
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(thrownCode([&] { const OLMRecurrence unwanted(parser, "", "", 0); }), tableCode);
    }
}

TEST(OLMRecurrenceTest, EveryMemberHasADefault) {
    RecurringItem item;
    item.zoneOffset = -300;

    ParsedRecurrence recurring(recurrence(), item);

    EXPECT_EQ(recurring->recurFrequency, 0x200Au);
    EXPECT_EQ(recurring->patternType, 0u);
    EXPECT_EQ(recurring->firstDateTime, 0u);
    EXPECT_EQ(recurring->period, 0u);
    EXPECT_EQ(recurring->daysOfWeek, 0u);
    EXPECT_EQ(recurring->weekOfMonth, 1u);
    EXPECT_EQ(recurring->dayOfMonth, 1u);
    EXPECT_EQ(recurring->month, 0u);
    EXPECT_EQ(recurring->endType, 0x2023u);
    EXPECT_EQ(recurring->occurrenceCount, 0u);
    EXPECT_FALSE(recurring->hasEndDate);
    EXPECT_EQ(recurring->timeZoneOffset, -300);
    EXPECT_EQ(recurring->endDate, nullptr);
    EXPECT_EQ(recurring->startDate, nullptr);
}

TEST(OLMRecurrenceTest, ItemTimesComeFromTheTextsEvenEmptyOnes) {
    RecurringItem item;
    item.start = "2011-05-02T14:00:00";
    item.end = "";

    ParsedRecurrence recurring(recurrence(), item);

    EXPECT_EQ(recurring->itemStart->getTime(), 1304344800000);
    EXPECT_EQ(recurring->itemEnd->getTime(), -11644473599000); // 1601-01-01T00:00:01: no date
}

// --- Parsing.

TEST(OLMRecurrenceTest, ElementsAtAnyDepthCount) {
    ParsedRecurrence recurring(recurrence()
                                   .element("OPFRecurrencePatternInterval", "3")
                                   .open("OPFRecurrencePattern")
                                   .open("somethingElse")
                                   .element("OPFRecurrenceCopyStartDate", "2011-05-02T00:00:00")
                                   .element("OPFRecurrencePatternDayOfMonth", "9")
                                   .close()
                                   .close()
                                   .element("OPFRecurrencePatternWeek", "4"));

    recurring.parsed();

    EXPECT_EQ(recurring->period, 3u * 1440);
    EXPECT_EQ(recurring->dayOfMonth, 9u);
    EXPECT_EQ(recurring->weekOfMonth, 4u);
}

TEST(OLMRecurrenceTest, TextOfOtherElementsIsLeftUnread) {
    ParsedRecurrence recurring(relative()
                                   .element("OPFRecurrenceIsNumbered", "1")
                                   .open("OPFRecurrencePattern")
                                   .text("7")
                                   .close()
                                   .element("monday", "1")
                                   .element("unheardOf", "7"));
    recurring.host.forgetCalls();

    recurring.parsed();

    EXPECT_EQ(recurring.host.countOf(CallKind::ReadContent), 3); // those of patterned()
    EXPECT_EQ(recurring->daysOfWeek, 0u);
}

TEST(OLMRecurrenceTest, NothingAfterTheClosingTagIsRead) {
    ParsedRecurrence recurring(
        relative().close().element("OPFRecurrencePatternDayOfMonth", "20").element("other"));

    recurring.parsed();

    EXPECT_EQ(recurring->dayOfMonth, 1u);
}

TEST(OLMRecurrenceTest, OpeningTagOfTheClosingIdEndsParsingToo) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFCalendarEventCopyRecurrence")
                                   .element("OPFRecurrencePatternDayOfMonth", "20"));

    recurring.parsed();

    EXPECT_EQ(recurring->dayOfMonth, 1u);
}

TEST(OLMRecurrenceTest, EndOfTheDocumentEndsParsing) {
    ItemDocument cut = relative().element("OPFRecurrencePatternDayOfMonth", "20").breakOff();
    ParsedRecurrence recurring(cut);

    recurring.parsed();

    EXPECT_EQ(recurring->dayOfMonth, 20u);
}

TEST(OLMRecurrenceTest, ElementWhereTheDocumentBreaksCountsAgainWithoutText) {
    ItemDocument cut = relative().open("OPFRecurrencePatternDayOfMonth").text("20").breakOff();
    ParsedRecurrence recurring(cut);

    recurring.parsed();

    EXPECT_EQ(recurring->dayOfMonth, 0u);
}

TEST(OLMRecurrenceTest, LaterElementOfANameReplacesAnEarlierOne) {
    ParsedRecurrence recurring(recurrence()
                                   .element("OPFRecurrenceCopyEndDate", "2012-01-01T00:00:00")
                                   .element("OPFRecurrenceCopyStartDate", "2010-01-01T00:00:00")
                                   .element("OPFRecurrenceCopyEndDate", "2012-01-02T00:00:00")
                                   .element("OPFRecurrenceCopyStartDate", "2010-01-03T00:00:00")
                                   .element("OPFRecurrenceHasEndDate", "1")
                                   .element("OPFRecurrencePatternInterval", "2")
                                   .element("OPFRecurrencePatternInterval", "1"));

    recurring.parsed();

    EXPECT_EQ(recurring->startDate->getTime(), 1262476800000);
    EXPECT_EQ(recurring->endDate->getTime(), 1325462400000);
    EXPECT_EQ(recurring->period, 1440u);
}

// --- Numbers and truth values.

struct NumberCase {
    const char* name;
    const char* text;
    uint32_t number;
};

class RecurrenceNumberTest : public testing::TestWithParam<NumberCase> {};

TEST_P(RecurrenceNumberTest, IsTruncatedTo32Bits) {
    const char* text = GetParam().text;
    ParsedRecurrence recurring(relative()
                                   .element("OPFRecurrenceGetOccurenceCount", text)
                                   .element("OPFRecurrencePatternDayOfMonth", text)
                                   .element("OPFRecurrencePatternMonth", text)
                                   .element("OPFRecurrencePatternInterval", text)
                                   .element("OPFRecurrenceHasEndDate", text)
                                   .element("OPFRecurrenceCopyEndDate", "2012-01-01T00:00:00"));

    recurring.parsed();

    EXPECT_EQ(recurring->occurrenceCount, GetParam().number);
    EXPECT_EQ(recurring->dayOfMonth, GetParam().number);
    EXPECT_EQ(recurring->month, uint64_t{GetParam().number});
    EXPECT_EQ(recurring->period, GetParam().number);
    EXPECT_EQ(recurring->hasEndDate, GetParam().number != 0);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RecurrenceNumberTest,
    testing::Values(NumberCase{"Plain", "12", 12}, NumberCase{"Exponent", "2.7E1", 27},
                    NumberCase{"LongExponent", "1.84E2", 184}, NumberCase{"One", "1E0", 1},
                    NumberCase{"Zero", "0E0", 0}, NumberCase{"Empty", "", 0},
                    NumberCase{"NoNumber", "soon", 0}, NumberCase{"TheWordTrue", "true", 0},
                    NumberCase{"WhiteSpace", " \n7 ", 7}, NumberCase{"Fraction", "5.9", 5},
                    NumberCase{"Negative", "-1", 0xFFFFFFFF},
                    NumberCase{"Bit31", "2147483648", 0x80000000},
                    NumberCase{"Bit32", "4294967296", 0}, NumberCase{"PastBit32", "4294967299", 3},
                    NumberCase{"Bit63", "9223372036854775808", 0xFFFFFFFF},
                    NumberCase{"SmallestOf64Bits", "-9223372036854775808", 0},
                    NumberCase{"HugeExponent", "1E400", 0xFFFFFFFF}),
    rowName);

class RecurrenceWeekTest : public testing::TestWithParam<NumberCase> {};

TEST_P(RecurrenceWeekTest, OnlyOneToFiveAreWeeks) {
    ParsedRecurrence recurring(relative().element("OPFRecurrencePatternWeek", GetParam().text));

    recurring.parsed();

    EXPECT_EQ(recurring->weekOfMonth, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Texts, RecurrenceWeekTest,
                         testing::Values(NumberCase{"First", "1", 1},
                                         NumberCase{"Second", "2E0", 2},
                                         NumberCase{"Third", "3", 3}, NumberCase{"Fourth", "4", 4},
                                         NumberCase{"Last", "5", 5}, NumberCase{"Zero", "0", 0},
                                         NumberCase{"Six", "6", 0}, NumberCase{"Negative", "-1", 0},
                                         NumberCase{"Empty", "", 0}, NumberCase{"Word", "first", 0},
                                         NumberCase{"OneAboveBit32", "4294967297", 1}),
                         rowName);

// --- Pattern texts.

struct PatternCase {
    const char* name;
    const char* text;
    uint32_t frequency;
    uint32_t pattern;
};

class RecurrencePatternTest : public testing::TestWithParam<PatternCase> {};

TEST_P(RecurrencePatternTest, SetsFrequencyAndPatternType) {
    ParsedRecurrence recurring(recurrence()
                                   .element("OPFRecurrenceCopyStartDate", "2011-05-02T05:00:00")
                                   .element("OPFRecurrencePatternInterval", "1")
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("monday", "1")
                                   .close()
                                   .element("OPFRecurrencePatternType", GetParam().text));

    recurring.parsed();

    EXPECT_EQ(recurring->recurFrequency, GetParam().frequency);
    EXPECT_EQ(recurring->patternType, GetParam().pattern);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RecurrencePatternTest,
    testing::Values(
        PatternCase{"Daily", "OPFRecurrencePatternDaily", 0x200A, 0},
        PatternCase{"Weekly", "OPFRecurrencePatternWeekly", 0x200B, 1},
        PatternCase{"RelativeMonthly", "OPFRecurrencePatternRelativeMonthly", 0x200C, 3},
        PatternCase{"AbsoluteMonthly", "OPFRecurrencePatternAbsoluteMonthly", 0x200C, 2},
        PatternCase{"RelativeYearly", "OPFRecurrencePatternRelativeYearly", 0x200D, 3},
        PatternCase{"AbsoluteYearly", "OPFRecurrencePatternAbsoluteYearly", 0x200D, 2},
        PatternCase{"OtherCase", "opfRECURRENCEpatternWEEKLY", 0x200B, 1},
        PatternCase{"Unknown", "OPFRecurrencePatternHourly", 0x200A, 0},
        PatternCase{"WithWhiteSpace", " OPFRecurrencePatternWeekly", 0x200A, 0},
        PatternCase{"Longer", "OPFRecurrencePatternWeekly2", 0x200A, 0},
        PatternCase{"Empty", "", 0x200A, 0}),
    rowName);

TEST(OLMRecurrenceTest, UnknownPatternTextKeepsTheEarlierPattern) {
    ParsedRecurrence recurring(patterned("AbsoluteYearly")
                                   .element("OPFRecurrencePatternType", "yearly")
                                   .element("OPFRecurrencePatternType"));

    recurring.parsed();

    EXPECT_EQ(recurring->recurFrequency, 0x200Du);
    EXPECT_EQ(recurring->patternType, 2u);
}

// --- Days.

struct DayCase {
    const char* element;
    uint32_t flag;
};

class RecurrenceDayTest : public testing::TestWithParam<DayCase> {};

TEST_P(RecurrenceDayTest, HasItsFlag) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element(GetParam().element, "1E0")
                                   .close());

    recurring.parsed();

    EXPECT_EQ(recurring->daysOfWeek, GetParam().flag);
}

INSTANTIATE_TEST_SUITE_P(Elements, RecurrenceDayTest,
                         testing::Values(DayCase{"sunday", 0x01}, DayCase{"monday", 0x02},
                                         DayCase{"tuesday", 0x04}, DayCase{"wednesday", 0x08},
                                         DayCase{"thursday", 0x10}, DayCase{"friday", 0x20},
                                         DayCase{"saturday", 0x40}, DayCase{"allDays", 0x7F},
                                         DayCase{"weekdays", 0x3E}, DayCase{"weekenddays", 0x41}),
                         [](const auto& row) { return std::string(row.param.element); });

TEST(OLMRecurrenceTest, FalseDaysRemoveNothing) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("weekdays", "1")
                                   .element("monday", "0")
                                   .element("tuesday", "true")
                                   .element("friday")
                                   .close());

    recurring.parsed();

    EXPECT_EQ(recurring->daysOfWeek, 0x3Eu);
}

TEST(OLMRecurrenceTest, AllDaysSkipsTheOtherTextsOfTheList) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("allDays", "1")
                                   .element("friday", "1")
                                   .element("monday", "0")
                                   .close()
                                   .element("OPFRecurrencePatternDayOfMonth", "9"));
    recurring.host.forgetCalls();

    recurring.parsed();

    EXPECT_EQ(recurring->daysOfWeek, 0x7Fu);
    EXPECT_EQ(recurring->dayOfMonth, 9u);
    EXPECT_EQ(recurring.host.countOf(CallKind::ReadContent), 5); // patterned(), allDays, the 9
}

TEST(OLMRecurrenceTest, OtherElementsOfTheDayListAreNotDays) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("someday", "1")
                                   .element("OPFRecurrencePatternDayOfMonth", "9")
                                   .open("nested")
                                   .element("saturday", "1")
                                   .close()
                                   .close());

    recurring.parsed();

    EXPECT_EQ(recurring->daysOfWeek, 0x40u);
    EXPECT_EQ(recurring->dayOfMonth, 1u);
}

TEST(OLMRecurrenceTest, SecondDayListReplacesTheFirst) {
    ParsedRecurrence recurring(relative()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("monday", "1")
                                   .close()
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("tuesday", "1")
                                   .close());

    recurring.parsed();

    EXPECT_EQ(recurring->daysOfWeek, 0x04u);
}

TEST(OLMRecurrenceTest, UnclosedDayListEndsWithTheDocument) {
    ItemDocument cut = relative()
                           .open("OPFRecurrencePatternDaysOfWeek")
                           .element("monday", "1")
                           .element("tuesday", "1")
                           .breakOff();
    ParsedRecurrence recurring(cut);

    recurring.parsed();

    // The tag of the broken list counts once more for the element around it, without days.
    EXPECT_EQ(recurring->daysOfWeek, 0u);
}

// --- The end.

struct EndCase {
    const char* name;
    std::vector<std::pair<const char*, const char*>> elements;
    uint32_t endType;
    uint32_t endDate;
};

class RecurrenceEndTest : public testing::TestWithParam<EndCase> {};

TEST_P(RecurrenceEndTest, TypeAndDateAreIndependent) {
    ItemDocument document = relative();
    for (const auto& [element, text] : GetParam().elements) {
        document.element(element, text);
    }
    RecurringItem item;
    item.zoneOffset = -300;
    ParsedRecurrence recurring(document, item);

    recurring.parsed();

    EXPECT_EQ(recurring->endType, GetParam().endType);
    EXPECT_EQ(recurring->getEndDate(), GetParam().endDate);
}

namespace end {

constexpr std::pair<const char*, const char*> date = {"OPFRecurrenceCopyEndDate",
                                                      "2018-12-18T05:00:00"};
constexpr std::pair<const char*, const char*> announced = {"OPFRecurrenceHasEndDate", "1"};
constexpr std::pair<const char*, const char*> notAnnounced = {"OPFRecurrenceHasEndDate", "0"};
constexpr std::pair<const char*, const char*> never = {"OPFRecurrenceIsNoEnd", "1"};
constexpr std::pair<const char*, const char*> some = {"OPFRecurrenceIsNoEnd", "0"};
constexpr uint32_t dateValue = 219826080; // 2018-12-18T00:00 local

} // namespace end

INSTANTIATE_TEST_SUITE_P(
    Orders, RecurrenceEndTest,
    testing::Values(
        EndCase{"Nothing", {}, 0x2023, endless}, EndCase{"Never", {end::never}, 0x2023, endless},
        EndCase{"SomeEnd", {end::some}, 0x2022, endless},
        EndCase{"AnnouncedBefore", {end::date, end::announced, end::some}, 0x2021, end::dateValue},
        EndCase{"AnnouncedAfter", {end::date, end::some, end::announced}, 0x2022, end::dateValue},
        EndCase{"DateAfter", {end::announced, end::some, end::date}, 0x2021, end::dateValue},
        EndCase{"DateNotAnnounced", {end::date, end::some}, 0x2022, endless},
        EndCase{"DateDenied", {end::date, end::notAnnounced, end::some}, 0x2022, endless},
        EndCase{"DateAndNever", {end::date, end::announced, end::never}, 0x2023, end::dateValue},
        EndCase{"TypeIsTakenAtItsElement",
                {end::date, end::announced, end::some, end::notAnnounced},
                0x2021,
                endless}),
    rowName);

TEST(OLMRecurrenceTest, FixedEndIsTheLastMinuteOf4500) {
    ParsedRecurrence recurring(patterned("RelativeMonthly")
                                   .element("OPFRecurrenceCopyStartDate", "2011-05-02T00:00:00")
                                   .element("OPFRecurrenceCopyEndDate", "4500-12-31T23:59:00")
                                   .element("OPFRecurrenceHasEndDate", "1"));

    recurring.parsed();

    EXPECT_EQ(recurring->getEndDate(), endless);
}

// --- Daylight saving.

struct ZoneCase {
    const char* name;
    int offset;
    const char* start;
    int adjusted;
};

class RecurrenceZoneTest : public testing::TestWithParam<ZoneCase> {};

TEST_P(RecurrenceZoneTest, ShiftsByAnHourUnlessTheStartIsMidnight) {
    RecurringItem item;
    item.zoneOffset = GetParam().offset;
    ParsedRecurrence recurring(relative().element("OPFRecurrenceCopyStartDate", GetParam().start),
                               item);

    recurring.parsed();

    EXPECT_EQ(recurring->timeZoneOffset, GetParam().adjusted);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, RecurrenceZoneTest,
    testing::Values(
        ZoneCase{"West", -300, "2011-05-02T05:00:00", -300},
        ZoneCase{"WestInSummer", -300, "2011-05-02T04:00:00", -240},
        ZoneCase{"East", 60, "2011-05-01T23:00:00", 60},
        ZoneCase{"EastInSummer", 60, "2011-05-01T22:00:00", 120},
        ZoneCase{"Greenwich", 0, "2011-05-02T00:00:00", 0},
        ZoneCase{"GreenwichInSummer", 0, "2011-05-01T23:00:00", 60},
        ZoneCase{"NoZoneAndNoMidnight", 0, "2011-05-02T06:00:00", 60},
        ZoneCase{"MinutesPastMidnightCountAsMidnight", 0, "2011-05-02T00:45:00", 0},
        ZoneCase{"HalfHour", 330, "2011-05-01T18:30:00", 330},
        ZoneCase{"HalfHourInSummer", 330, "2011-05-01T17:30:00", 390},
        ZoneCase{"Minute29CountsAs30", 330, "2011-05-01T18:29:00", 330},
        ZoneCase{"Minute28DoesNot", 330, "2011-05-01T18:28:00", 390},
        ZoneCase{"SumAbove60HasNoCarry", 330, "2011-05-01T18:31:00", 390},
        ZoneCase{"QuarterHour", 345, "2011-05-01T18:15:00", 345},
        ZoneCase{"QuarterHourShort", 345, "2011-05-01T18:14:00", 405},
        ZoneCase{"QuarterHourInSummer", 765, "2011-05-01T10:15:00", 825},
        ZoneCase{"HalfHourWest", -210, "2011-05-02T03:30:00", -210},
        ZoneCase{"HalfHourWestHasNoCarry", -210, "2011-05-02T03:00:00", -210},
        ZoneCase{"HalfHourWestInSummer", -210, "2011-05-02T02:30:00", -150},
        ZoneCase{"HalfHourOfSummerTimeCountsAsAnHour", 630, "2011-05-01T13:00:00", 690},
        ZoneCase{"FarthestEast", 840, "2011-05-01T10:00:00", 840},
        ZoneCase{"FarthestWest", -720, "2011-05-02T12:00:00", -720},
        ZoneCase{"HoursWrapAroundAt16Bits", 60 * 65536 - 300, "2011-05-02T05:00:00",
                 60 * 65536 - 300},
        ZoneCase{"LargestOffsetWrapsAround", 2147483647, "2011-05-02T00:00:00", -2147483589},
        ZoneCase{"SmallestOffset", -2147483647 - 1, "2011-05-02T00:00:00", -2147483588}),
    rowName);

TEST(OLMRecurrenceTest, Minute29StaysInTheRecurrenceDate) {
    RecurringItem item;
    item.zoneOffset = 330;
    ParsedRecurrence recurring(
        relative().element("OPFRecurrenceCopyStartDate", "2011-05-01T18:29:00"), item);

    recurring.parsed();

    EXPECT_EQ(recurring->getStartDate(), 215812799u); // 2011-05-01T23:59
}

// --- Dates.

TEST(OLMRecurrenceTest, WeeklyCaseCalculatedByHand) {
    RecurringItem item;
    item.zoneOffset = -300;
    ParsedRecurrence recurring(
        patterned("Weekly", "2").open("OPFRecurrencePatternDaysOfWeek").element("monday", "1"),
        item);

    recurring.parsed();

    EXPECT_EQ(recurring->startDate->getTime(), 1304312400000);
    EXPECT_EQ(recurring->timeZoneOffset, -300);
    EXPECT_EQ(recurring->qorDateToRecurDate(*recurring->startDate), 215813100u);
    EXPECT_EQ(recurring->getStartDate(), 215812800u);
    EXPECT_EQ(recurring->firstDateTime, 18720u);
}

TEST(OLMRecurrenceTest, WeeklyCaseUnderDaylightSavingCalculatedByHand) {
    RecurringItem item;
    item.zoneOffset = -300;
    ParsedRecurrence recurring(patterned("Weekly", "2")
                                   .element("OPFRecurrenceCopyStartDate", "2011-05-02T04:00:00")
                                   .open("OPFRecurrencePatternDaysOfWeek")
                                   .element("monday", "1"),
                               item);

    recurring.parsed();

    EXPECT_EQ(recurring->timeZoneOffset, -240);
    EXPECT_EQ(recurring->getStartDate(), 215812800u);
    EXPECT_EQ(recurring->firstDateTime, 18720u);
}

struct MinuteCase {
    const char* name;
    qor::Date date;
    uint32_t minutes;
};

class RecurrenceMinuteTest : public testing::TestWithParam<MinuteCase> {};

TEST_P(RecurrenceMinuteTest, CountsFrom1601) {
    ParsedRecurrence recurring(recurrence());

    EXPECT_EQ(recurring->qorDateToRecurDate(GetParam().date), GetParam().minutes);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, RecurrenceMinuteTest,
    testing::Values(
        MinuteCase{"Of1970", dateOf(1970, 1, 1, 0, 0, 0, 0), 194074560},
        MinuteCase{"AMillisecondShort", dateOf(1970, 1, 1, 0, 0, 59, 999), 194074561},
        MinuteCase{"TwoMillisecondsShort", dateOf(1970, 1, 1, 0, 0, 59, 998), 194074560},
        MinuteCase{"Before1970IsRoundedTowardIt", dateOf(1969, 12, 31, 23, 59, 0, 0), 194074560},
        MinuteCase{"Of1601", dateOf(1601, 1, 1, 0, 0, 0, 0), 1},
        MinuteCase{"NoDate", dateOf(1601, 1, 1, 0, 0, 1, 0), 1},
        MinuteCase{"FirstYearWrapsAround", dateOf(1, 1, 1, 0, 0, 0, 0), 3453448577},
        MinuteCase{"LastYearWrapsAround", dateOf(9999, 12, 31, 23, 59, 0, 0), 122478943}),
    rowName);

struct OffsetCase {
    const char* name;
    const char* itemTime;
    int64_t asStart;
    int64_t asEnd;
};

class RecurrenceOffsetTest : public testing::TestWithParam<OffsetCase> {};

TEST_P(RecurrenceOffsetTest, OnlyTheStartIsCorrectedByAMillisecond) {
    RecurringItem item;
    item.start = GetParam().itemTime;
    item.end = GetParam().itemTime;
    ParsedRecurrence recurring(relative(), item);

    recurring.parsed();

    EXPECT_EQ(recurring->getStartTimeOffset(), GetParam().asStart);
    EXPECT_EQ(recurring->getEndTimeOffset(), GetParam().asEnd);
}

// The recurrence starts at 2011-05-02T05:00.
INSTANTIATE_TEST_SUITE_P(
    Times, RecurrenceOffsetTest,
    testing::Values(OffsetCase{"Same", "2011-05-02T05:00:00", 0, 0},
                    OffsetCase{"WholeMinutes", "2011-05-02T14:30:00", 570, 570},
                    OffsetCase{"AMillisecondShort", "2011-05-02T14:29:59.999", 570, 569},
                    OffsetCase{"TwoMillisecondsShort", "2011-05-02T14:29:59.998", 569, 569},
                    OffsetCase{"Before", "2011-05-02T03:59:00", -60, -61},
                    OffsetCase{"HalfAMinuteBefore", "2011-05-02T04:59:30", 0, 0},
                    OffsetCase{"DaysAfter", "2011-05-04T05:00:00", 2880, 2880},
                    OffsetCase{"NoDate", "", -215813099, -215813099}),
    rowName);

// --- Interval and first occurrence.

struct DerivedCase {
    const char* name;
    const char* pattern;
    const char* interval;
    const char* month; // null: no element
    uint32_t period;
    uint32_t firstDateTime;
};

class RecurrenceDerivedTest : public testing::TestWithParam<DerivedCase> {};

TEST_P(RecurrenceDerivedTest, IntervalAndFirstOccurrenceFollowFromThePattern) {
    ItemDocument document = patterned(GetParam().pattern, GetParam().interval)
                                .open("OPFRecurrencePatternDaysOfWeek")
                                .element("monday", "1")
                                .element("friday", "1")
                                .close();
    if (GetParam().month != nullptr) {
        document.element("OPFRecurrencePatternMonth", GetParam().month);
    }
    RecurringItem item;
    item.zoneOffset = -300;
    ParsedRecurrence recurring(document, item);

    recurring.parsed();

    EXPECT_EQ(recurring->period, GetParam().period);
    EXPECT_EQ(recurring->firstDateTime, GetParam().firstDateTime);
}

// The start's recurrence date is 215812800 = 149870 days; 149870 = 3 * 49956 + 2.
INSTANTIATE_TEST_SUITE_P(
    Patterns, RecurrenceDerivedTest,
    testing::Values(
        DerivedCase{"EveryDay", "Daily", "1", nullptr, 1440, 0},
        DerivedCase{"EveryThirdDay", "Daily", "3", nullptr, 4320, 2880},
        DerivedCase{"DailyWrappedAround", "Daily", "2982617", nullptr, 1184, 215812800 % 1184},
        DerivedCase{"EveryWeek", "Weekly", "1", nullptr, 1, 8640},
        DerivedCase{"EverySecondWeek", "Weekly", "2", nullptr, 2, 18720},
        DerivedCase{"WeeklyWrappedAround", "Weekly", "426089", nullptr, 426089, 215811360 % 9824},
        DerivedCase{"MonthlyWithoutMonth", "AbsoluteMonthly", "2", nullptr, 2, 0},
        DerivedCase{"MonthlyInterval0", "AbsoluteMonthly", "0", nullptr, 0, 0},
        DerivedCase{"January", "AbsoluteMonthly", "1", "1", 1, 0},
        DerivedCase{"March", "AbsoluteMonthly", "1", "3", 1, 84960},
        DerivedCase{"December", "AbsoluteMonthly", "1", "12", 1, 480960},
        DerivedCase{"Month13IsTheNextJanuary", "AbsoluteMonthly", "1", "13", 1, 525600},
        DerivedCase{"MonthBelow0CountsBack", "AbsoluteMonthly", "1", "-1", 1, 0xFFFFFFFF - 87839},
        DerivedCase{"YearlyIsTwelveMonths", "AbsoluteYearly", "5", "3", 12, 84960},
        DerivedCase{"YearlyInterval0IsKept", "AbsoluteYearly", "0", "3", 0, 84960},
        DerivedCase{"YearlyWithoutMonth", "AbsoluteYearly", "1", nullptr, 12, 0},
        DerivedCase{"RelativeMonthly", "RelativeMonthly", "2", "3", 2, 0},
        DerivedCase{"RelativeYearly", "RelativeYearly", "5", "3", 12, 0},
        DerivedCase{"RelativeYearlyInterval0", "RelativeYearly", "0", "3", 0, 0}),
    rowName);

TEST(OLMRecurrenceTest, IntervalOfAnUnknownFrequencyIsKept) {
    ParsedRecurrence recurring(recurrence());
    recurring->recurFrequency = 0x200E;
    recurring->period = 5;
    recurring->firstDateTime = 77;

    recurring->modifyPeriod();
    recurring->calcFirstDateTime();

    EXPECT_EQ(recurring->period, 5u);
    EXPECT_EQ(recurring->firstDateTime, 77u);
}

// --- Faults.

struct FaultCase {
    const char* name;
    ItemDocument document;
};

class RecurrenceFaultTest : public testing::TestWithParam<FaultCase> {};

TEST_P(RecurrenceFaultTest, ThrowsWhileParsing) {
    ParsedRecurrence recurring(GetParam().document);

    EXPECT_EQ(recurring.parse(), recurrenceCode);
}

namespace {

ItemDocument weekly(const std::string& interval) {
    return patterned("Weekly", interval)
        .open("OPFRecurrencePatternDaysOfWeek")
        .element("friday", "1")
        .close();
}

ItemDocument withoutStart(const std::string& pattern) {
    return recurrence()
        .element("OPFRecurrencePatternInterval", "1")
        .element("OPFRecurrencePatternType", "OPFRecurrencePattern" + pattern);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(
    Inputs, RecurrenceFaultTest,
    testing::Values(
        FaultCase{"EmptyElement", recurrence()}, FaultCase{"NoStart", withoutStart("Daily")},
        FaultCase{"NoStartOfARelativePattern", withoutStart("RelativeMonthly")},
        FaultCase{"NoStartOfAnAbsolutePattern", withoutStart("AbsoluteYearly")},
        FaultCase{"EndAnnouncedButMissing", relative().element("OPFRecurrenceHasEndDate", "1")},
        FaultCase{"WeeklyWithoutADayList", patterned("Weekly")},
        FaultCase{"WeeklyWithAnEmptyDayList",
                  patterned("Weekly").element("OPFRecurrencePatternDaysOfWeek")},
        FaultCase{"WeeklyWithEveryDayFalse", patterned("Weekly")
                                                 .open("OPFRecurrencePatternDaysOfWeek")
                                                 .element("monday", "0")
                                                 .element("weekdays", "true")
                                                 .close()},
        FaultCase{"DailyWithoutInterval",
                  recurrence().element("OPFRecurrenceCopyStartDate", "2011-05-02T05:00:00")},
        FaultCase{"DailyInterval0", patterned("Daily", "0")},
        FaultCase{"DailyIntervalNotANumber", patterned("Daily", "often")},
        FaultCase{"DailyIntervalWrapsTo0", patterned("Daily", "134217728")},
        FaultCase{"DailyIntervalOfBit31", patterned("Daily", "2147483648")},
        FaultCase{"DailyIntervalOfBit32", patterned("Daily", "4294967296")},
        FaultCase{"WeeklyInterval0", weekly("0")},
        FaultCase{"WeeklyIntervalWrapsTo0", weekly("134217728")},
        FaultCase{"WeeklyIntervalOfBit31", weekly("2147483648")},
        FaultCase{"WeeklyIntervalOfBit32", weekly("4294967296")}),
    rowName);

TEST(OLMRecurrenceTest, GettersRejectAMissingDate) {
    ParsedRecurrence recurring(recurrence());
    recurring->hasEndDate = true;

    EXPECT_EQ(thrownCode([&] { recurring->getStartDate(); }), recurrenceCode);
    EXPECT_EQ(thrownCode([&] { recurring->getEndDate(); }), recurrenceCode);
    EXPECT_EQ(thrownCode([&] { recurring->getStartTimeOffset(); }), recurrenceCode);
    EXPECT_EQ(thrownCode([&] { recurring->getEndTimeOffset(); }), recurrenceCode);
}
