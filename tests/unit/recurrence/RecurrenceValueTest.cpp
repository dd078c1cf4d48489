#include "filter/recurrence/RecurrenceValue.h"

#include <gmock/gmock.h>

#include "filter/storage/OLMMsgWriter.h"
#include "tests/unit/RowName.h"
#include "tests/unit/recurrence/ParsedRecurrence.h"
#include "tests/unit/storage/Thrown.h"

using fakehost::Bytes;
using fakehost::CallKind;
using fakehost::hex;
using fakehost::ItemDocument;

namespace {

ItemDocument everyOtherMonday() {
    return patterned("Weekly", "2")
        .open("OPFRecurrencePatternDaysOfWeek")
        .element("monday", "1")
        .close();
}

RecurringItem easternItem() {
    RecurringItem item;
    item.zoneOffset = -300;
    return item;
}

// The parts of the value that are always the same.
const char* const head = "04 30 04 30";
const char* const tailVersions = "06 30 00 00  09 30 00 00";
const char* const tailEnd = "00 00  00 00 00 00  00 00 00 00";

} // namespace

TEST(RecurrenceValueTest, WeeklyValueHasTheseBytes) {
    ParsedRecurrence recurring(everyOtherMonday(), easternItem());

    const Bytes value = recurring.parsed().value();

    EXPECT_EQ(value, hex(head) + hex("0B 20  01 00  00 00") +
                         hex("20 49 00 00  02 00 00 00  00 00 00 00") + // 18720
                         hex("02 00 00 00") +                           // Monday
                         hex("23 20 00 00  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00") +
                         hex("C0 0A DD 0C  DF 80 E9 5A") + hex(tailVersions) +
                         hex("1C 02 00 00  76 02 00 00") + hex(tailEnd)); // 540 and 630 minutes
    EXPECT_EQ(value.size(), 80u);
}

// A meeting with numbers in scientific notation: every Monday, 27 times.
TEST(RecurrenceValueTest, ValueFromScientificNotationHasTheseBytes) {
    ItemDocument document = recurrence()
                                .element("OPFRecurrenceCopyEndDate", "2018-12-18T07:00:00")
                                .element("OPFRecurrenceCopyStartDate", "2018-06-18T06:00:00")
                                .element("OPFRecurrenceGetOccurenceCount", "2.7E1")
                                .element("OPFRecurrenceHasEndDate", "1")
                                .element("OPFRecurrenceIsNoEnd", "0")
                                .element("OPFRecurrenceIsNumbered", "1")
                                .open("OPFRecurrencePattern")
                                .open("OPFRecurrencePatternDaysOfWeek")
                                .element("allDays", "0")
                                .element("friday", "0")
                                .element("monday", "1E0")
                                .close()
                                .element("OPFRecurrencePatternInterval", "1")
                                .element("OPFRecurrencePatternType", "OPFRecurrencePatternWeekly")
                                .close();
    RecurringItem item;
    item.start = "2018-06-18T16:00:00";
    item.end = "2018-06-18T17:00:00";
    item.zoneOffset = -420;
    ParsedRecurrence recurring(document, item);

    const Bytes value = recurring.parsed().value();

    // The start is under daylight saving, so the end, which is not, is 2018-12-18T01:00.
    EXPECT_EQ(value, hex(head) + hex("0B 20  01 00  00 00") +
                         hex("C0 21 00 00  01 00 00 00  00 00 00 00") + hex("02 00 00 00") +
                         hex("21 20 00 00  1B 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00") +
                         fakehost::le32(219562560) + fakehost::le32(219826140) + hex(tailVersions) +
                         hex("58 02 00 00  94 02 00 00") + hex(tailEnd));
}

struct PartCase {
    const char* name;
    uint32_t patternType;
    const char* part;
};

class RecurrencePartTest : public testing::TestWithParam<PartCase> {};

TEST_P(RecurrencePartTest, IsBetweenHeadAndTail) {
    ParsedRecurrence recurring(patterned("RelativeMonthly"));
    recurring.parsed();
    recurring->patternType = GetParam().patternType;
    recurring->daysOfWeek = 0x15;
    recurring->dayOfMonth = 0xFFFFFFFF;
    recurring->weekOfMonth = 5;
    recurring->month = 0xFFFFFFFFFF;
    const Bytes part = hex(GetParam().part);

    const Bytes value = recurring.value();

    ASSERT_EQ(value.size(), 76 + part.size());
    EXPECT_EQ(value.part(6, 2), fakehost::le16(static_cast<uint16_t>(GetParam().patternType)));
    EXPECT_EQ(value.part(22, part.size()), part);
    EXPECT_EQ(value.part(22 + part.size(), 4), hex("23 20 00 00"));
}

INSTANTIATE_TEST_SUITE_P(PatternTypes, RecurrencePartTest,
                         testing::Values(PartCase{"Days", 0, ""},
                                         PartCase{"Weeks", 1, "15 00 00 00"},
                                         PartCase{"DayOfMonth", 2, "FF FF FF FF"},
                                         PartCase{"NthDay", 3, "15 00 00 00  05 00 00 00"},
                                         PartCase{"AnyOther", 4, ""},
                                         PartCase{"AboveSixteenBits", 0x10001, ""}),
                         rowName);

TEST(RecurrenceValueTest, FrequencyAndOffsetsAreTruncated) {
    RecurringItem item;
    item.start = "0001-01-01T00:00:00";
    item.end = "9999-12-31T00:00:00";
    ParsedRecurrence recurring(patterned("RelativeYearly"), item);
    recurring.parsed();
    recurring->recurFrequency = 0x1200D;

    const Bytes value = recurring.value();

    // The start, 2011-05-02T05:00, is minute 215813100 since 1601. The year 1 begins 841518720
    // minutes before 1601, the last day of 9999 4417444800 minutes after it.
    EXPECT_EQ(value.part(4, 2), hex("0D 20"));
    EXPECT_EQ(value.part(66, 4), fakehost::le32(static_cast<uint32_t>(-841518720 - 215813100 + 1)));
    EXPECT_EQ(value.part(70, 4), fakehost::le32(static_cast<uint32_t>(4417444800 - 215813100)));
}

TEST(RecurrenceValueTest, EveryNumberIsASeparateWrite) {
    ParsedRecurrence recurring(everyOtherMonday());
    recurring.parsed();
    HostStream* stream =
        OLMMsgWriter::createSubStreamFromWString(recurring.host.newRoot(), "value");
    recurring.host.forgetCalls();

    EXPECT_EQ(writeRecurrenceValue(stream, *recurring), 80u);

    const auto writes = recurring.host.callTexts(CallKind::Write);
    std::string sizes;
    for (const std::string& write : writes) {
        sizes += write[write.size() - 2];
    }
    EXPECT_EQ(sizes, "22222444"
                     "4"
                     "44444444444244");
    EXPECT_EQ(recurring.host.message().stream("value"), recurring.value());
}

TEST(RecurrenceValueTest, AnyShortWriteThrows) {
    ParsedRecurrence recurring(everyOtherMonday());
    recurring.parsed();
    constexpr int writeCount = 23;

    for (int failing = 0; failing <= writeCount; ++failing) {
        SCOPED_TRACE(failing);
        HostStream* stream =
            OLMMsgWriter::createSubStreamFromWString(recurring.host.newRoot(), "value");
        recurring.host.shortenWrite(failing, 1, 0);

        const auto code = thrownCode([&] { writeRecurrenceValue(stream, *recurring); });

        EXPECT_EQ(code, failing == writeCount ? std::nullopt : std::optional(shortWriteCode));
    }
}

TEST(RecurrenceValueTest, MissingStreamIsAShortWrite) {
    ParsedRecurrence recurring(everyOtherMonday());
    recurring.parsed();

    EXPECT_EQ(thrownCode([&] { writeRecurrenceValue(nullptr, *recurring); }), shortWriteCode);
}
