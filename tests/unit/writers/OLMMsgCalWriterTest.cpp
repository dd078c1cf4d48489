#include "filter/writers/OLMMsgCalWriter.h"

#include "filter/writers/OLMMsgCalTags.h"
#include "tests/unit/core/Wide.h"
#include "tests/unit/writers/CalMessages.h"
#include "tests/unit/writers/FullItems.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class OLMMsgCalWriterObjectTest : public CalWriterTest {};

} // namespace

// --- The writer itself.

TEST_F(OLMMsgCalWriterObjectTest, NewWriterHasNoTimeZone) {
    makeWriter();

    EXPECT_EQ(writer->timeZoneOffset, 0);
}

namespace {

// The parameter is the status that the host returns.
class OLMMsgCalWriterRejectedTableTest : public CalWriterTest,
                                         public testing::WithParamInterface<int32_t> {};

INSTANTIATE_TEST_SUITE_P(Statuses, OLMMsgCalWriterRejectedTableTest, testing::Values(-3, 3));

} // namespace

TEST_P(OLMMsgCalWriterRejectedTableTest, IsIgnored) {
    openDocument(appointment().element("OPFCalendarEventCopySummary", "Ebb"));
    ASSERT_EQ(parser->addTags(calTags.data(), calTags.size()), 0);
    host.failCall(CallKind::AddTagMap, 0, GetParam());

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_TRUE(host.hasFailed());
    EXPECT_EQ(writer->expectedProps, 19u);
    EXPECT_EQ(writer->writeNode(*parser), 5);
    EXPECT_EQ(message().stream("__substg1.0_0037001F"), utf16(u"Ebb"));
}

// Without the table the reader knows none of the tags, which no writer accepts.
TEST_F(OLMMsgCalWriterObjectTest, ItemUnknownDueToARejectedTableThrows) {
    openDocument(appointment());
    host.failCall(CallKind::AddTagMap, 0, -3);

    EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), unknownCode);
    EXPECT_TRUE(message().hasRoot());
}

TEST_F(OLMMsgCalWriterObjectTest, LastStartAndEndAreKeptForTheRecurrence) {
    begin(appointment()
              .element(calStart, "2011-05-02")
              .element(calEnd, "2011-05-03")
              .element(calStart, "2011-05-04")
              .element(calEnd, "2011-05-05")
              .element(calStart)
              .element(calEnd));
    run();

    EXPECT_EQ(writer->startText, wide(u"2011-05-04"));
    EXPECT_EQ(writer->endText, wide(u"2011-05-05"));
}

// --- Entries that can't be added.

namespace {

struct GuardCase {
    const char* name;
    const char* element;
    const char* text;
    bool isGuarded; // an unknown property is left out, and the item goes on
};

class OLMMsgCalWriterGuardTest : public CalWriterTest,
                                 public testing::WithParamInterface<GuardCase> {
protected:
    void beginWithRefusal(unsigned int code) {
        begin(appointment().element(GetParam().element, GetParam().text));
        writer->refusal = code;
    }

    // Returns the code and message of what run() throws, if anything.
    std::optional<std::pair<unsigned int, std::string>> failure() {
        try {
            EXPECT_EQ(run().back(), 100);
        } catch (const qor::Exception& thrown) {
            return std::pair(thrown.code, std::string(thrown.message()));
        }
        return std::nullopt;
    }
};

} // namespace

TEST_P(OLMMsgCalWriterGuardTest, UnknownPropertyIsLeftOutOnlyByItsGuard) {
    beginWithRefusal(unknownCode);

    const auto thrown = failure();

    if (GetParam().isGuarded) {
        EXPECT_EQ(thrown, std::nullopt);
    } else {
        EXPECT_EQ(thrown, std::pair(unknownCode, std::string("refused")));
    }
    EXPECT_EQ(writer->handledProps, GetParam().isGuarded ? 1u : 0u);
    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_P(OLMMsgCalWriterGuardTest, OtherFailureIsRethrownWithItsMessage) {
    beginWithRefusal(qor::errorIndex);

    EXPECT_EQ(failure(), std::pair(qor::errorIndex, std::string("refused")));
    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(host.openHandles(), openBefore);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, OLMMsgCalWriterGuardTest,
    testing::Values(GuardCase{"ReminderTime", "OPFCalendarEventCopyReminderTime", "2018", true},
                    GuardCase{"ReminderDelta", "OPFCalendarEventCopyReminderDelta", "60", true},
                    GuardCase{"HasReminder", "OPFCalendarEventGetHasReminder", "1", true},
                    GuardCase{"Status", "OPFCalendarEventCopyFreeBusyStatus", "1", true},
                    GuardCase{"AllDay", "OPFCalendarEventGetIsAllDayEvent", "1", true},
                    GuardCase{"TimeZone", calZone, "+1:00", true},
                    GuardCase{"Start", calStart, "2018-06-21", false},
                    GuardCase{"End", calEnd, "2018-06-21", false},
                    GuardCase{"Location", "OPFCalendarEventCopyLocation", "Pier", false},
                    GuardCase{"Sensitivity", "OPFCalendarEventGetIsPrivate", "1", false}),
    rowName);

TEST_F(OLMMsgCalWriterObjectTest, TimeZoneThatIsLeftOutIsStillRead) {
    begin(appointment().element(calZone, "(UTC-05:00) Eastern Time"));
    writer->refusal = unknownCode;

    run();

    EXPECT_EQ(writer->timeZoneOffset, -300);
}

// --- Whole messages.

TEST(OLMMsgCalWriterTest, FullAppointmentHasItsEntriesInDocumentOrderAndTheRecurrenceLast) {
    const StoredMessage message = writeItem(fullAppointment());

    // The times are 129488237990000000, 131740151470000000, 116444736000000000 and
    // 129488183990000000.
    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(appointmentKind, 2) +
                  hex("1F 10 00 80  06 00 00 00  04 00 00 00 00 00 00 00"
                      "1F 00 00 10  06 00 00 00  18 00 00 00 00 00 00 00"
                      "40 00 01 80  06 00 00 00  80 35 FC CB DD 08 CC 01"
                      "40 00 61 00  06 00 00 00  80 35 FC CB DD 08 CC 01"
                      "03 00 02 80  06 00 00 00  03 00 00 00 00 00 00 00"
                      "1F 00 03 80  06 00 00 00  0A 00 00 00 00 00 00 00"
                      "40 00 08 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                      "03 00 04 80  06 00 00 00  0F 00 00 00 00 00 00 00"
                      "40 00 05 80  06 00 00 00  00 80 3E D5 DE B1 9D 01"
                      "40 00 06 80  06 00 00 00  80 99 55 39 D1 08 CC 01"
                      "40 00 60 00  06 00 00 00  80 99 55 39 D1 08 CC 01"
                      "1F 00 37 00  06 00 00 00  12 00 00 00 00 00 00 00"
                      "1F 00 07 80  06 00 00 00  32 00 00 00 00 00 00 00"
                      "0B 00 08 80  06 00 00 00  01 00 00 00 00 00 00 00"
                      "0B 00 09 80  06 00 00 00  01 00 00 00 00 00 00 00"
                      "03 00 36 00  06 00 00 00  02 00 00 00 00 00 00 00"
                      "02 01 0A 80  06 00 00 00  50 00 00 00 00 00 00 00"));
}

TEST(OLMMsgCalWriterTest, FullAppointmentHasItsStreamsInTheOrderOfWriting) {
    const StoredMessage message = writeItem(fullAppointment());

    EXPECT_THAT(message.names(),
                ElementsAre("__nameid_version1.0", "__substg1.0_10090102", "__substg1.0_001A001F",
                            "__recip_version1.0_#00000000", "__substg1.0_8000101F",
                            "__substg1.0_8000101F-00000000", "__substg1.0_1000001F",
                            "__substg1.0_8003001F", "__recip_version1.0_#00000001",
                            "__substg1.0_0037001F", "__substg1.0_8007001F", "__substg1.0_800A0102",
                            propertyStream));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), hex("08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"Bring boots"));
    EXPECT_EQ(message.stream("__substg1.0_8003001F"), utf16(u"Pier"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Mud walk"));
    EXPECT_EQ(message.stream("__substg1.0_8007001F"), utf16(u"(UTC-05:00) Eastern Time"));
    EXPECT_EQ(message.stream("__substg1.0_800A0102"), weeklyValue());
}

TEST(OLMMsgCalWriterTest, FullAppointmentNamesItsPropertiesInTwoSets) {
    const StoredMessage message = writeItem(fullAppointment());

    EXPECT_EQ(nameStream(message, "00020102"),
              hex("02 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"
                  "08 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("00 00 00 00  05 00  00 00"
                                                   "0E 82 00 00  06 00  01 00"
                                                   "05 82 00 00  06 00  02 00"
                                                   "08 82 00 00  06 00  03 00"
                                                   "01 85 00 00  08 00  04 00"
                                                   "02 85 00 00  08 00  05 00"
                                                   "0D 82 00 00  06 00  06 00"
                                                   "34 82 00 00  06 00  07 00"
                                                   "03 85 00 00  08 00  08 00"
                                                   "15 82 00 00  06 00  09 00"
                                                   "16 82 00 00  06 00  0A 00"));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    EXPECT_EQ(nameStream(message, "10190102"), hex("0E 82 00 00  06 00  01 00"));
    EXPECT_EQ(nameStream(message, "10000102"), hex("08 82 00 00  06 00  03 00"));
    EXPECT_EQ(nameStream(message, "10130102"), hex("01 85 00 00  08 00  04 00"));
    EXPECT_EQ(nameStream(message, "101C0102"), hex("0D 82 00 00  06 00  06 00"));
    EXPECT_EQ(nameStream(message, "10020102"), hex("16 82 00 00  06 00  0A 00"));
    // Three buckets hold two properties each.
    EXPECT_EQ(nameStream(message, "10150102"), hex("3B 4D DA 2E  05 00  00 00"
                                                   "03 85 00 00  08 00  08 00"));
    EXPECT_EQ(nameStream(message, "10140102"), hex("05 82 00 00  06 00  02 00"
                                                   "02 85 00 00  08 00  05 00"));
    EXPECT_EQ(nameStream(message, "10050102"), hex("34 82 00 00  06 00  07 00"
                                                   "15 82 00 00  06 00  09 00"));
    EXPECT_THAT(message.names("__nameid_version1.0"), SizeIs(11));
}

// --- Start and end.

TEST(OLMMsgCalWriterTest, StartAndEndHaveTwoTagsEach) {
    const StoredMessage message = writeItem(appointment()
                                                .element(calEnd, "2018-06-21T00:39:08")
                                                .element(calStart, "1970-01-01T00:00:00"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x00610040, timeIn2018),
                            entry(0x80010040, time1970), entry(0x00600040, time1970)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("0E 82 00 00  06 00  00 00"
                                                   "0D 82 00 00  06 00  01 00"));
}

TEST(OLMMsgCalWriterTest, TwoStartsMakeFourEntries) {
    const StoredMessage message = writeItem(appointment()
                                                .element(calStart, "2018-06-21T00:39:08")
                                                .element(calStart, "1970-01-01T00:00:00"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x00600040, timeIn2018),
                            entry(0x80010040, time1970), entry(0x00600040, time1970)));
}

TEST(OLMMsgCalWriterTest, StartWithoutTextTakesANumberAndEndWithoutTextDoesNot) {
    const Outcome start = extractItem(appointment().element(calStart));
    EXPECT_THAT(ownEntries(start.message), IsEmpty());
    EXPECT_EQ(nameStream(start.message, "00030102"), hex("0D 82 00 00  06 00  00 00"));
    EXPECT_THAT(start.progress, ElementsAre(5, 5, 100)) << "the element counts";

    const Outcome end = extractItem(appointment().element(calEnd));
    EXPECT_THAT(ownEntries(end.message), IsEmpty());
    EXPECT_EQ(nameStream(end.message, "00030102"), Bytes());
    EXPECT_THAT(end.progress, ElementsAre(5, 5, 100));
}

TEST(OLMMsgCalWriterTest, StartAndEndThatAreNotDatesAreTimeZero) {
    const StoredMessage message =
        writeItem(appointment().element(calStart, "noon").element(calEnd, " "));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x80000040, 0), entry(0x00600040, 0),
                                                 entry(0x80010040, 0), entry(0x00610040, 0)));
}

// --- The reminder.

TEST(OLMMsgCalWriterTest, ReminderTimeWithoutTextIsTimeZero) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopyReminderTime")
                      .element("OPFCalendarEventCopyReminderTime", "2018-06-21T00:39:08"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, 0), entry(0x80010040, timeIn2018)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("02 85 00 00  06 00  00 00"
                                                   "02 85 00 00  06 00  01 00"));
}

namespace {

class OLMMsgCalWriterDeltaTest : public NumberTest {};
class OLMMsgCalWriterStatusTest : public NumberTest {};
class OLMMsgCalWriterTruthTest : public NumberTest {};
class OLMMsgCalWriterPrivateTest : public NumberTest {};

} // namespace

TEST_P(OLMMsgCalWriterDeltaTest, SecondsBecomeMinutes) {
    expectOnlyEntry(appointment().element("OPFCalendarEventCopyReminderDelta", GetParam().text),
                    entry(0x80000003, GetParam().value), "01 85 00 00  06 00  00 00");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterDeltaTest,
    testing::Values(NumberCase{"QuarterOfAnHour", "900", 15}, NumberCase{"Truncated", "90", 1},
                    NumberCase{"BelowAMinute", "59", 0}, NumberCase{"Zero", "0", 0},
                    NumberCase{"Exponent", "9.6904E4", 1615},
                    NumberCase{"Negative", "-60", 0x0444444444444443},
                    NumberCase{"MinusOne", "-1", 0x0444444444444444},
                    NumberCase{"Wide", "4294967296", 71582788},
                    NumberCase{"Largest", "9223372036854775807", 0x0222222222222222},
                    NumberCase{"Smallest", "-9223372036854775808", 0x0222222222222222},
                    NumberCase{"NoNumber", "soon", 0}, NumberCase{"NoText", "", 0}),
    rowName);

TEST_P(OLMMsgCalWriterTruthTest, HasReminderIsAlwaysWritten) {
    expectOnlyEntry(appointment().element("OPFCalendarEventGetHasReminder", GetParam().text),
                    entry(0x8000000B, GetParam().value), "03 85 00 00  06 00  00 00");
}

TEST_P(OLMMsgCalWriterTruthTest, AllDayIsWrittenOnlyWhenItIsTrue) {
    const Outcome outcome =
        extractItem(appointment().element("OPFCalendarEventGetIsAllDayEvent", GetParam().text));

    if (GetParam().value == 1) {
        EXPECT_THAT(ownEntries(outcome.message), ElementsAre(entry(0x8000000B, 1)));
        EXPECT_EQ(nameStream(outcome.message, "00030102"), hex("15 82 00 00  06 00  00 00"));
    } else {
        EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
        EXPECT_EQ(nameStream(outcome.message, "00030102"), Bytes());
    }
    EXPECT_EQ(outcome.progress.front(), 5) << "the element counts";
}

INSTANTIATE_TEST_SUITE_P(Texts, OLMMsgCalWriterTruthTest,
                         testing::Values(NumberCase{"One", "1", 1}, NumberCase{"Zero", "0", 0},
                                         NumberCase{"ExponentOne", "1E0", 1},
                                         NumberCase{"ExponentZero", "0E0", 0},
                                         NumberCase{"True", "true", 1}, NumberCase{"Yes", "YES", 1},
                                         NumberCase{"False", "false", 0}, NumberCase{"Two", "2", 1},
                                         NumberCase{"NoText", "", 0}),
                         rowName);

// --- Location, privacy, status.

TEST(OLMMsgCalWriterTest, LocationIsANamedString) {
    const StoredMessage message = writeItem(appointment()
                                                .element("OPFCalendarEventCopyLocation")
                                                .element("OPFCalendarEventCopyLocation", "Pier"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 2), entry(0x8001001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), utf16(u"Pier"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("08 82 00 00  06 00  00 00"
                                                   "08 82 00 00  06 00  01 00"));
}

// Not checked for null: a write to a missing stream is a failed write.
TEST_F(OLMMsgCalWriterObjectTest, LocationWithoutAStreamIsLeftOut) {
    begin(appointment().element("OPFCalendarEventCopyLocation", "Pier"));
    host.failCall(CallKind::CreateStream, 0);

    run();

    EXPECT_TRUE(host.hasFailed());
    EXPECT_THAT(added(), IsEmpty());
    EXPECT_FALSE(message().has("__substg1.0_8000001F"));
}

TEST_P(OLMMsgCalWriterPrivateTest, OnlyTheNumberOneIsPrivate) {
    const Outcome outcome =
        extractItem(appointment().element("OPFCalendarEventGetIsPrivate", GetParam().text));

    if (GetParam().value == 2) {
        EXPECT_THAT(ownEntries(outcome.message), ElementsAre(entry(0x00360003, 2)));
    } else {
        EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
    }
    EXPECT_EQ(outcome.progress.front(), 5) << "the element counts";
}

// 4294967297 is 2^32 + 1: the number is not truncated to 32 bits before the comparison.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterPrivateTest,
    testing::Values(NumberCase{"One", "1", 2}, NumberCase{"Exponent", "1E0", 2},
                    NumberCase{"Fraction", "1.9", 2}, NumberCase{"Zero", "0", 0},
                    NumberCase{"Two", "2", 0}, NumberCase{"MinusOne", "-1", 0},
                    NumberCase{"Wide", "4294967297", 0}, NumberCase{"Word", "true", 0},
                    NumberCase{"NoText", "", 0}),
    rowName);

TEST_P(OLMMsgCalWriterStatusTest, StatusIsMapped) {
    expectOnlyEntry(appointment().element("OPFCalendarEventCopyFreeBusyStatus", GetParam().text),
                    entry(0x80000003, GetParam().value), "05 82 00 00  06 00  00 00");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterStatusTest,
    testing::Values(NumberCase{"Zero", "0", 2}, NumberCase{"One", "1", 0},
                    NumberCase{"Two", "2", 1}, NumberCase{"Three", "3", 3},
                    NumberCase{"Four", "4", 2}, NumberCase{"MinusOne", "-1", 2},
                    NumberCase{"Exponent", "3E0", 3}, NumberCase{"Wide", "4294967297", 2},
                    NumberCase{"NoNumber", "away", 2}, NumberCase{"NoText", "", 2}),
    rowName);

// --- The time zone.

namespace {

struct ZoneCase {
    const char* name;
    const char* text;
    int offset;
};

class OLMMsgCalWriterZoneTest : public CalWriterTest,
                                public testing::WithParamInterface<ZoneCase> {};

} // namespace

TEST_P(OLMMsgCalWriterZoneTest, TextIsWrittenWholeAndReadForItsOffset) {
    const Bytes text = utf16(toUtf16(GetParam().text));
    begin(appointment().element(calZone, GetParam().text));

    run();

    EXPECT_EQ(writer->timeZoneOffset, GetParam().offset);
    EXPECT_THAT(added(), ElementsAre(entry(0x8000001F, text.size() + 2)));
    EXPECT_EQ(message().stream("__substg1.0_8000001F"), text);
}

// The numbers wrap around at 32 bits: 35791395 hours are 2^31 + 52 minutes.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterZoneTest,
    testing::Values(ZoneCase{"West", "(UTC-05:00) Eastern Time (US & Canada)", -300},
                    ZoneCase{"East", "(UTC+05:30) Chennai", 330},
                    ZoneCase{"HalfHourWest", "(UTC-03:30) Newfoundland", -210},
                    ZoneCase{"QuarterHourEast", "(UTC+05:45) Kathmandu", 345},
                    ZoneCase{"FarEast", "+14:00", 840}, ZoneCase{"Zero", "+00:00", 0},
                    ZoneCase{"NoSign", "(UTC) Dublin 10:30", 0}, ZoneCase{"NoText", "", 0},
                    ZoneCase{"PlusAfterAMinus", "GMT-3 or +2:00", 120},
                    ZoneCase{"MinusAfterAPlus", "+2:00 or -3", 120},
                    ZoneCase{"FirstColonBeforeTheSign", "Zone:7 is UTC-5:30", -307},
                    ZoneCase{"SignWithoutColonOrNumberBefore", "UTC+2", 120},
                    ZoneCase{"SignWithoutColonAfterANumber", "15 is UTC-2", -135},
                    ZoneCase{"SignAtTheStartWithoutColon", "-5", -295},
                    ZoneCase{"PlusAtTheStartWithoutColon", "+5", 305},
                    ZoneCase{"OnlyASign", "+", 0}, ZoneCase{"SignAtTheEnd", "12 -", -12},
                    ZoneCase{"TwoSigns", "+-5:00", -300}, ZoneCase{"TwoMinuses", "--5:00", 300},
                    ZoneCase{"ColonAtTheEnd", "+5:", 300},
                    ZoneCase{"NegativeMinutes", "+5:-10", 290},
                    ZoneCase{"SpacesAndExponent", "- 1E1: 3E1", -630},
                    ZoneCase{"NoNumbers", "+a:b", 0}, ZoneCase{"Letters", "Mid-Atlantic", 0},
                    ZoneCase{"HoursThatWrapAround", "+35791395:00", -2147483596},
                    ZoneCase{"HoursOfTwoTo32", "+4294967297:00", 60},
                    ZoneCase{"HoursOfTwoTo63", "+9223372036854775807:00", -60},
                    ZoneCase{"HoursBelowTwoTo63", "+-9223372036854775808:00", 0},
                    ZoneCase{"SmallestThatCantBeNegated", "-0:2147483648", -2147483647 - 1},
                    ZoneCase{"SumThatWrapsAround", "+35791394:2147483647", -9}),
    rowName);

TEST_F(OLMMsgCalWriterObjectTest, ZoneWithoutTextOrSignKeepsTheOffset) {
    begin(appointment().element(calZone, "+2:00").element(calZone).element(calZone, "Dublin"));

    run();

    EXPECT_EQ(writer->timeZoneOffset, 120);
    EXPECT_THAT(added(),
                ElementsAre(entry(0x8000001F, 12), entry(0x8001001F, 2), entry(0x8002001F, 14)));
}

TEST(OLMMsgCalWriterTest, TimeZoneIsANamedProperty) {
    const StoredMessage message = writeItem(appointment().element(calZone, "Dublin"));

    EXPECT_EQ(nameStream(message, "00030102"), hex("34 82 00 00  06 00  00 00"));
}

// --- Elements without a handler of their own.

TEST(OLMMsgCalWriterTest, SubjectBodyAndModificationAreCopied) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopySummary", "RE: Ebb")
                      .element("OPFCalendarEventCopyDescriptionPlain", "Bring boots")
                      .element("OPFCalendarEventCopyModDate", "2018-06-21T00:39:08")
                      .element("OPFCalendarEventCopyModDate"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x0037001F, 16), entry(0x1000001F, 24),
                            entry(0x30080040, timeIn2018), entry(0x30080040, 0)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"RE: Ebb"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"Bring boots"));
}

// --- Progress.

TEST(OLMMsgCalWriterTest, ProgressCountsTheElementsOfTheTable) {
    EXPECT_THAT(extractItem(appointment()
                                .open("OPFCalendarEventCopyAttendeeList")
                                .element("appointmentAttendee")
                                .close()
                                .element("stranger", "text")
                                .element("OPFCalendarEventCopyOrganizer", "o@x")
                                .element("OPFCalendarEventGetIsPrivate", "0"))
                    .progress,
                ElementsAre(5, 5, 5, 10, 10, 15, 15, 100));
}
