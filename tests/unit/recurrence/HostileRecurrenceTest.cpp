// Numbers, dates and documents that no calendar writes; most useful with the sanitizers.

#include <limits>

#include <gmock/gmock.h>

#include "tests/unit/recurrence/ParsedRecurrence.h"
#include "tests/unit/storage/Thrown.h"

using fakehost::ItemDocument;

namespace {

constexpr int offsets[] = {std::numeric_limits<int>::min(), -86400, -1, 0, 1, 1439,
                           std::numeric_limits<int>::max()};

struct HostileNumber {
    const char* text;
    uint32_t number;
};

// clang-format off
constexpr HostileNumber numbers[] = {
    {"0",                    0},
    {"-1",                   0xFFFFFFFF},
    {"2147483647",           0x7FFFFFFF},
    {"2147483648",           0x80000000},
    {"4294967295",           0xFFFFFFFF},
    {"4294967296",           0},
    {"134217728",            0x08000000},
    {"2982616",              2982616},
    {"9223372036854775807",  0xFFFFFFFF},
    {"9223372036854775808",  0xFFFFFFFF},
    {"-9223372036854775808", 0},
    {"-9223372036854775809", 0},
    {"1E9999999999999",      0xFFFFFFFF},
    {"-1E9999999999999",     0},
    {"1E-9999999999999",     0},
    {"NaN",                  0},
    {"inf",                  0},
    {"0x10",                 0},
    {"",                     0},
    {"\xD9\xA1",             0}, // the Arabic digit 1
};
// clang-format on

struct HostileDate {
    const char* text;
    int64_t minute; // since 1601
};

// Dates before 1970 are rounded toward 1970. 1601-01-01T00:00:01 means "no date".
// clang-format off
constexpr HostileDate dates[] = {
    {"",                             1},
    {"garbage",                      1},
    {"2011-02-29T00:00:00",          1},
    {"10000-01-01T00:00:00",         1},
    {"99999999999999999999",         1},
    {"-001-01-01T00:00:00",          1},
    {"2011-05-02T00:00:00+24:00",    1},
    {"0001-01-01T00:00:00",          -841518719},
    {"0001-01-01T00:00:00+23:59",    -841518720 - 1439 + 1},
    {"9999-12-31T23:59:00",          4417446239},
    {"9999-12-31T24:00:00",          4417446240},
    {"9999-12-31T23:59:60-23:59",    4417446240 + 1439},
};
// clang-format on

// Returns a whole element; the texts to test are appended and take precedence.
ItemDocument whole(const std::string& pattern) {
    return patterned(pattern)
        .element("OPFRecurrenceCopyEndDate", "2012-01-01T00:00:00")
        .element("OPFRecurrenceHasEndDate", "1")
        .element("OPFRecurrenceIsNoEnd", "0")
        .open("OPFRecurrencePatternDaysOfWeek")
        .element("wednesday", "1")
        .close();
}

// Returns the divisor of an interval, 1 for patterns without one.
uint32_t divisorOf(const std::string& pattern, uint32_t interval) {
    if (pattern == "Daily") {
        return static_cast<uint32_t>(uint64_t{interval} * 1440 % (uint64_t{1} << 32));
    }
    if (pattern == "Weekly") {
        return static_cast<uint32_t>(uint64_t{interval} * 10080 % (uint64_t{1} << 32));
    }
    return 1;
}

} // namespace

class HostilePatternTest : public testing::TestWithParam<const char*> {};

TEST_P(HostilePatternTest, OnlyAnIntervalOf0IsAFault) {
    for (const HostileNumber& interval : numbers) {
        for (const int offset : offsets) {
            SCOPED_TRACE(testing::Message() << interval.text << " at offset " << offset);
            RecurringItem item;
            item.zoneOffset = offset;
            ItemDocument document =
                whole(GetParam()).element("OPFRecurrencePatternInterval", interval.text);
            ParsedRecurrence recurring(document, item);
            const uint32_t divisor = divisorOf(GetParam(), interval.number);

            const auto code = recurring.parse();

            EXPECT_EQ(code, divisor == 0 ? std::optional(15u) : std::nullopt);
            if (divisor > 1) {
                EXPECT_LT(recurring->firstDateTime, divisor);
            }
            if (!code) {
                EXPECT_GE(recurring.value().size(), 76u);
            }
        }
    }
}

TEST_P(HostilePatternTest, OtherNumbersAreTakenUnchecked) {
    for (const HostileNumber& hostile : numbers) {
        SCOPED_TRACE(hostile.text);
        ItemDocument document = whole(GetParam())
                                    .element("OPFRecurrenceGetOccurenceCount", hostile.text)
                                    .element("OPFRecurrencePatternDayOfMonth", hostile.text)
                                    .element("OPFRecurrencePatternMonth", hostile.text)
                                    .element("OPFRecurrencePatternWeek", hostile.text);
        ParsedRecurrence recurring(document);

        recurring.parsed();

        EXPECT_EQ(recurring->occurrenceCount, hostile.number);
        EXPECT_EQ(recurring->dayOfMonth, hostile.number);
        EXPECT_EQ(recurring->month, uint64_t{hostile.number});
        EXPECT_EQ(recurring->weekOfMonth, 0u);
        EXPECT_GE(recurring.value().size(), 76u);
    }
}

TEST_P(HostilePatternTest, DatesWrapAroundAt32Bits) {
    for (const HostileDate& date : dates) {
        for (const int offset : offsets) {
            SCOPED_TRACE(testing::Message() << date.text << " at offset " << offset);
            ItemDocument document = whole(GetParam())
                                        .element("OPFRecurrenceCopyStartDate", date.text)
                                        .element("OPFRecurrenceCopyEndDate", date.text);
            ParsedRecurrence recurring(document, {date.text, date.text, offset});

            recurring.parsed();

            const auto local = static_cast<uint32_t>(date.minute) +
                               static_cast<uint32_t>(recurring->timeZoneOffset);
            EXPECT_EQ(recurring->getStartDate(), local);
            EXPECT_EQ(recurring->getEndDate(), local);
            EXPECT_EQ(recurring->getStartTimeOffset(), 0);
            EXPECT_EQ(recurring->getEndTimeOffset(), 0);
            EXPECT_GE(recurring.value().size(), 76u);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Patterns, HostilePatternTest,
                         testing::Values("Daily", "Weekly", "RelativeMonthly", "AbsoluteMonthly",
                                         "RelativeYearly", "AbsoluteYearly"),
                         [](const auto& row) { return std::string(row.param); });

TEST(HostileRecurrenceTest, DatesBeyondAnyTextDoNotOverflow) {
    const double limit = std::numeric_limits<double>::max();
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    ParsedRecurrence recurring(whole("RelativeMonthly"));
    recurring.parsed();

    for (const double start : {-limit, limit, nothing}) {
        for (const double end : {-limit, limit, nothing}) {
            recurring->startDate = std::make_unique<qor::Date>(start);
            recurring->endDate = std::make_unique<qor::Date>(end);
            recurring->itemStart = std::make_unique<qor::Date>(end);
            recurring->itemEnd = std::make_unique<qor::Date>(end);
            recurring->adjustTimeZoneOffset();

            EXPECT_EQ(recurring.value().size(), 84u);
        }
    }
}

TEST(HostileRecurrenceTest, MonthBeyondAnyTextDoesNotOverflow) {
    ParsedRecurrence recurring(whole("AbsoluteMonthly"));
    recurring.parsed();

    for (const uint64_t month : {uint64_t{0x7FFFFFFF}, uint64_t{0x80000000}, uint64_t{0xFFFFFFFF},
                                 std::numeric_limits<uint64_t>::max()}) {
        SCOPED_TRACE(month);
        recurring->month = month;
        recurring->calcFirstDateTime();

        EXPECT_EQ(recurring->firstDateTime % 1440, // whole days, except for the overflow
                  static_cast<uint64_t>(recurring->calculateMonthlyFDT()) % (uint64_t{1} << 32) %
                      1440);
        EXPECT_EQ(recurring->calculateMonthlyFDT() % 1440, 0);
    }
}

TEST(HostileRecurrenceTest, DocumentMayBreakAnywhere) {
    const ItemDocument document = whole("Weekly").close().element("other");
    const size_t eventCount = document.eventCount();
    int successes = 0;
    for (size_t count = 2; count < eventCount; ++count) {
        SCOPED_TRACE(count);
        ParsedRecurrence recurring(document.cutAfter(count));

        const auto code = recurring.parse();

        if (code) {
            EXPECT_EQ(code, 15u);
        } else {
            ++successes;
            EXPECT_EQ(recurring.value().size(), recurring->patternType == 1 ? 80u : 76u);
        }
    }
    EXPECT_GT(successes, 0);
}

TEST(HostileRecurrenceTest, AnyHostCallMayFail) {
    const ItemDocument document = whole("Weekly");
    ParsedRecurrence counted(document);
    counted.host.resetCallCount();
    counted.parsed();
    const int callCount = counted.host.hostCallCount();
    ASSERT_GT(callCount, 30);

    for (int failing = 0; failing < callCount; ++failing) {
        SCOPED_TRACE(failing);
        ParsedRecurrence recurring(document);
        recurring.host.failAnyCall(failing);

        const auto code = recurring.parse();

        EXPECT_TRUE(recurring.host.hasFailed());
        if (code) {
            EXPECT_EQ(code, 15u);
        } else {
            EXPECT_GE(recurring.value().size(), 76u);
        }
    }
}
