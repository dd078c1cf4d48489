#include "host/message/Recurrence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MessageBuilder.h"

namespace olmhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Every second week on Monday and Friday, ten times; one day deleted, one occurrence moved.
const std::string pattern = "04 30 04 30 0B 20 01 00 00 00"
                            "18 24 00 00" // first
                            "02 00 00 00" // period
                            "00 00 00 00" // sliding
                            "22 00 00 00" // days
                            "22 20 00 00" // ends after a count
                            "0A 00 00 00"
                            "01 00 00 00"                         // weeks begin on Monday
                            "02 00 00 00 D8 1C 1C 0D 98 33 1C 0D" // deleted
                            "01 00 00 00 98 33 1C 0D"             // modified
                            "D8 1C 1C 0D DF 80 E9 5A";            // start, no end date
const std::string times = "06 30 00 00 09 30 00 00 58 02 00 00 94 02 00 00"; // 600 to 660
const std::string noExceptions = "00 00  00 00 00 00  00 00 00 00";

// An exception with a subject, a location, a reminder and whole days.
const std::string exceptions = "01 00"
                               "00 36 1C 0D 3C 36 1C 0D F0 35 1C 0D"
                               "9D 00"
                               "03 00 02 00 48 69"       // "Hi"
                               "0F 00 00 00 01 00 00 00" // reminder
                               "02 00 01 00 51"          // "Q"
                               "01 00 00 00"
                               "00 00 00 00" // reserved
                               "04 00 00 00 00 00 00 00"
                               "00 00 00 00"
                               "00 36 1C 0D 3C 36 1C 0D F0 35 1C 0D"
                               "02 00 48 00 EF 00" // "Hï"
                               "01 00 3A 26"
                               "00 00 00 00"
                               "00 00 00 00";

std::string failureOf(const Bytes& value) {
    std::string failure;
    EXPECT_FALSE(decodeRecurrence(value, failure).has_value());
    return failure;
}

TEST(RecurrenceTest, WeeklyPatternIsDecoded) {
    std::string failure;

    const auto found = decodeRecurrence(hex(pattern + times + noExceptions), failure);

    ASSERT_TRUE(found.has_value()) << failure;
    EXPECT_EQ(found->frequency, Recurrence::Weekly);
    EXPECT_EQ(found->patternType, Recurrence::Week);
    EXPECT_EQ(found->firstDateTime, 0x2418U);
    EXPECT_EQ(found->period, 2U);
    EXPECT_EQ(found->dayMask, 0x22U);
    EXPECT_EQ(found->dayOfMonth, std::nullopt);
    EXPECT_EQ(found->endType, Recurrence::AfterCount);
    EXPECT_EQ(found->occurrenceCount, 10U);
    EXPECT_EQ(found->firstDayOfWeek, 1U);
    EXPECT_THAT(found->deletedDays, ElementsAre(0x0D1C1CD8, 0x0D1C3398));
    EXPECT_THAT(found->modifiedDays, ElementsAre(0x0D1C3398));
    EXPECT_EQ(found->startDate, 0x0D1C1CD8U);
    EXPECT_EQ(found->endDate, Recurrence::noEndDate);
    EXPECT_EQ(found->startOffset, 600U);
    EXPECT_EQ(found->endOffset, 660U);
    EXPECT_TRUE(found->exceptions.empty());
}

TEST(RecurrenceTest, ExceptionHasItsChangesAndTheWideTexts) {
    std::string failure;

    const auto found = decodeRecurrence(hex(pattern + times + exceptions), failure);

    ASSERT_TRUE(found.has_value()) << failure;
    ASSERT_EQ(found->exceptions.size(), 1U);
    const RecurrenceException& exception = found->exceptions.front();
    EXPECT_EQ(exception.start, 0x0D1C3600U);
    EXPECT_EQ(exception.end, 0x0D1C363CU);
    EXPECT_EQ(exception.originalStart, 0x0D1C35F0U);
    EXPECT_EQ(exception.subject, u"H\u00EF");
    EXPECT_EQ(exception.location, u"\u263A");
    EXPECT_EQ(exception.reminderDelta, 15U);
    EXPECT_EQ(exception.isReminderSet, true);
    EXPECT_EQ(exception.subType, 1U);
    EXPECT_EQ(exception.meetingType, std::nullopt);
    EXPECT_EQ(exception.busyStatus, std::nullopt);
    EXPECT_EQ(exception.color, std::nullopt);
}

TEST(RecurrenceTest, PatternAloneHasNoTimes) {
    std::string failure;

    const auto found = decodeRecurrence(hex(pattern), failure);

    ASSERT_TRUE(found.has_value()) << failure;
    EXPECT_EQ(found->startOffset, std::nullopt);
    EXPECT_EQ(found->endOffset, std::nullopt);
}

TEST(RecurrenceTest, EachPatternHasItsOwnFields) {
    struct Case {
        const char* type;
        const char* fields;
        std::optional<std::uint32_t> mask, day, week;
    };
    for (const auto& [type, fields, mask, day, week] :
         {Case{"00 00", "", {}, {}, {}}, Case{"01 00", "22 00 00 00", 0x22, {}, {}},
          Case{"02 00", "1F 00 00 00", {}, 31, {}},
          Case{"03 00", "02 00 00 00 05 00 00 00", 2, {}, 5},
          Case{"04 00", "1F 00 00 00", {}, 31, {}}, Case{"0A 00", "07 00 00 00", {}, 7, {}},
          Case{"0B 00", "02 00 00 00 05 00 00 00", 2, {}, 5},
          Case{"0C 00", "07 00 00 00", {}, 7, {}}}) {
        SCOPED_TRACE(type);
        std::string failure;

        const auto found =
            decodeRecurrence(hex(std::string("04 30 04 30 0C 20") + type +
                                 "00 00 00 00 00 00 01 00 00 00 00 00 00 00" + fields +
                                 "23 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                                 "D8 1C 1C 0D DF 80 E9 5A"),
                             failure);

        ASSERT_TRUE(found.has_value()) << failure;
        EXPECT_EQ(found->dayMask, mask);
        EXPECT_EQ(found->dayOfMonth, day);
        EXPECT_EQ(found->week, week);
        EXPECT_EQ(found->startDate, 0x0D1C1CD8U);
    }
}

TEST(RecurrenceTest, UnknownPatternAndBytesLeftOverAreRefused) {
    Bytes value = hex(pattern + times + noExceptions);
    value[6] = std::byte{9};
    EXPECT_THAT(failureOf(value), HasSubstr("unknown type"));
    EXPECT_THAT(failureOf(hex(pattern + times + noExceptions + "00")),
                HasSubstr("bytes after its end"));
}

TEST(RecurrenceTest, EveryTruncationIsRefusedExceptAfterThePattern) {
    const std::size_t patternSize = hex(pattern).size();
    for (const std::string& rest : {noExceptions, exceptions}) {
        Bytes value = hex(std::string(pattern).append(times).append(rest));
        while (!value.empty()) {
            value.pop_back();
            std::string failure;
            EXPECT_EQ(decodeRecurrence(value, failure).has_value(), value.size() == patternSize)
                << value.size() << " bytes";
        }
    }
}

TEST(RecurrenceTest, AnyChangedByteIsHarmless) {
    const Bytes whole = hex(pattern + times + exceptions);
    Bytes value = whole;
    for (std::size_t place = 0; place < value.size(); ++place) {
        for (unsigned changed = 0; changed <= 0xFF; ++changed) {
            value[place] = static_cast<std::byte>(changed);
            std::string failure;
            const auto found = decodeRecurrence(value, failure);
            EXPECT_NE(found.has_value(), !failure.empty());
        }
        value[place] = whole[place];
    }
}

} // namespace
} // namespace olmhost::test
