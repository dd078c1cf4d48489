#include "filter/writers/OLMMsgCalWriter.h"

#include "filter/writers/OLMMsgCalTags.h"
#include "tests/fakehost/Matchers.h"
#include "tests/unit/storage/Thrown.h"
#include "tests/unit/storage/Wide.h"
#include "tests/unit/writers/CalMessages.h"
#include "tests/unit/writers/MailMessages.h"
#include "tests/unit/writers/Sweeps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace fakehost;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// Every element that an appointment has, in the order of a real archive.
ItemDocument fullAppointment() {
    ItemDocument item = appointment();
    item.open("OPFCalendarEventCopyAttendeeList")
        .element("appointmentAttendee")
        .attribute("OPFCalendarAttendeeAddress", "a@x")
        .attribute("OPFCalendarAttendeeName", "Ann")
        .attribute("OPFCalendarAttendeeType", "1")
        .close()
        .open("OPFCalendarEventCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .element("OPFCalendarEventCopyDescription", "<b>Bring boots</b>")
        .element("OPFCalendarEventCopyDescriptionPlain", "Bring boots")
        .element("OPFCalendarEventCopyEndTime", "2011-05-02T15:30:00")
        .element("OPFCalendarEventCopyFreeBusyStatus", "3")
        .element("OPFCalendarEventCopyLocation", "Pier")
        .element("OPFCalendarEventCopyModDate", "2018-06-21T00:39:08")
        .element("OPFCalendarEventCopyOrganizer", "o@x");
    addWeekly(item, calRecurrenceElement);
    item.element("OPFCalendarEventCopyReminderDelta", "900")
        .element("OPFCalendarEventCopyReminderTime", "1970-01-01T00:00:01Z")
        .element("OPFCalendarEventCopyStartTime", "2011-05-02T14:00:00")
        .element("OPFCalendarEventCopySummary", "Mud walk")
        .element("OPFCalendarEventCopyTimeZone", "(UTC-05:00) Eastern Time")
        .element("OPFCalendarEventGetHasReminder", "1")
        .element("OPFCalendarEventGetIsAllDayEvent", "1E0")
        .element("OPFCalendarEventGetIsPrivate", "1");
    return item;
}

class OLMMsgCalWriterObjectTest : public CalWriterTest {};

} // namespace

// --- The object.

TEST_F(OLMMsgCalWriterObjectTest, ConstructionTouchesNoStorage) {
    host.forgetCalls();
    const OpenCalWriter other(&request);

    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_FALSE(other.hasRecurrence);
    EXPECT_EQ(other.startText.length(), 0);
    EXPECT_EQ(other.endText.length(), 0);
    EXPECT_EQ(other.timeZoneOffset, 0);
    EXPECT_EQ(other.recipientCount, 0);
}

TEST_F(OLMMsgCalWriterObjectTest, BeginningTakesTheRootTagAndCountsTheTable) {
    openDocument(appointment());

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_EQ(writer->rootTag, 0u);
    EXPECT_EQ(writer->expectedProps, 19u);
    EXPECT_EQ(writer->properties.size(), static_cast<int>(requiredCount));
}

TEST_F(OLMMsgCalWriterObjectTest, TableIsAddedInByteOrder) {
    begin(appointment());

    const std::vector<std::pair<std::string, uint64_t>> rows = {
        {"OPFCalendarEventCopyAttendeeList", 2},
        {"OPFCalendarEventCopyCategoryList", 1},
        {"OPFCalendarEventCopyDescription", 0x10130102},
        {"OPFCalendarEventCopyDescriptionPlain", 0x1000001F},
        {"OPFCalendarEventCopyEndTime", 0x00610040},
        {"OPFCalendarEventCopyFreeBusyStatus", 0x82050003},
        {"OPFCalendarEventCopyLocation", 0x8208001F},
        {"OPFCalendarEventCopyModDate", 0x30080040},
        {"OPFCalendarEventCopyOrganizer", 3},
        {"OPFCalendarEventCopyRecurrence", 4},
        {"OPFCalendarEventCopyReminderDelta", 0x85010003},
        {"OPFCalendarEventCopyReminderTime", 0x85020040},
        {"OPFCalendarEventCopyStartTime", 0x00600040},
        {"OPFCalendarEventCopySummary", 0x0037001F},
        {"OPFCalendarEventCopyTimeZone", 5},
        {"OPFCalendarEventGetHasReminder", 0x8503000B},
        {"OPFCalendarEventGetIsAllDayEvent", 0x8215000B},
        {"OPFCalendarEventGetIsPrivate", 0x00360003},
        {"appointment", 0},
    };
    EXPECT_EQ(host.tagMaps().back(), rows);
}

TEST(OLMMsgCalWriterTest, RefusedTableIsLetPass) {
    for (const int32_t status : {-3, 3}) {
        SCOPED_TRACE(status);
        FakeHost host;
        host.entry("Local/items.xml", appointment().element("OPFCalendarEventCopySummary", "Ebb"));
        SODOSPECIALARC request{};
        request.output = host.newOutput();
        OLMXMLParser parser(host.openArchive(), 0);
        OLMXMLTag root;
        ASSERT_EQ(parser.nextTag(root), 1);
        ASSERT_EQ(parser.addTags(calTags.data(), calTags.size()), 0);
        OpenCalWriter writer(&request);
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(writer.initilizeWriter(parser), 0u);

        EXPECT_TRUE(host.hasFailed());
        EXPECT_EQ(writer.expectedProps, 19u);
        EXPECT_EQ(writer.writeNode(parser), 5);
        EXPECT_EQ(host.message(request.output).stream("__substg1.0_0037001F"), utf16(u"Ebb"));
    }
}

// Without the table the reader knows none of the tags, and no writer goes on from there.
TEST_F(OLMMsgCalWriterObjectTest, ItemThatIsUnknownBecauseOfARefusedTableThrows) {
    openDocument(appointment());
    host.failCall(CallKind::AddTagMap, 0, -3);

    EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), unknownCode);
    EXPECT_TRUE(message().hasRoot());
}

TEST_F(OLMMsgCalWriterObjectTest, MissingRootStorageDoesNotEndTheBeginning) {
    openDocument(appointment());
    host.failCall(CallKind::CreateRoot, 0);

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);
    EXPECT_EQ(writer->expectedProps, 19u);
}

TEST_F(OLMMsgCalWriterObjectTest, OtherTagsAreLeftToTheGenericHandling) {
    begin(appointment());
    for (const uint32_t id : {0U, 6U, 0x0037001FU, 0x1000001FU, 0x10130102U, 0x30080040U,
                              0x82160102U, UTXML_UNKNOWN_TAG + 0U}) {
        SCOPED_TRACE(id);
        OLMXMLTag tag;
        tag.tagRecord.id = id;

        EXPECT_FALSE(writer->handlePropSpecial(tag, *parser));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgCalWriterObjectTest, WrittenAppointmentLeavesNothingOpenBehindTheWriter) {
    begin(fullAppointment());
    run();
    EXPECT_EQ(writer->finalizeNode(*parser), 0u);
    writer.reset();

    // The root, the storage of named properties and its three streams are given back too.
    EXPECT_EQ(host.openHandles(), openBefore - 5);
    EXPECT_TRUE(message().isRootClosed());
}

TEST_F(OLMMsgCalWriterObjectTest, LastStartAndEndAreKeptForTheRecurrence) {
    begin(appointment()
              .element("OPFCalendarEventCopyStartTime", "2011-05-02")
              .element("OPFCalendarEventCopyEndTime", "2011-05-03")
              .element("OPFCalendarEventCopyStartTime", "2011-05-04")
              .element("OPFCalendarEventCopyEndTime", "2011-05-05")
              .element("OPFCalendarEventCopyStartTime")
              .element("OPFCalendarEventCopyEndTime"));
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
    bool isGuarded; // a property that no table holds is left out, and the item goes on
};

class OLMMsgCalWriterGuardTest : public CalWriterTest,
                                 public testing::WithParamInterface<GuardCase> {
protected:
    void beginWithRefusal(unsigned int code) {
        begin(appointment().element(GetParam().element, GetParam().text));
        writer->refusal = code;
    }

    // Code and message of what run() throws; nothing when it comes to the item's end.
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

TEST_P(OLMMsgCalWriterGuardTest, UnknownPropertyIsLeftOutByItsGuardAlone) {
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

TEST_P(OLMMsgCalWriterGuardTest, OtherFailureIsThrownOnWithItsMessage) {
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
                    GuardCase{"TimeZone", "OPFCalendarEventCopyTimeZone", "+1:00", true},
                    GuardCase{"Start", "OPFCalendarEventCopyStartTime", "2018-06-21", false},
                    GuardCase{"End", "OPFCalendarEventCopyEndTime", "2018-06-21", false},
                    GuardCase{"Location", "OPFCalendarEventCopyLocation", "Pier", false},
                    GuardCase{"Sensitivity", "OPFCalendarEventGetIsPrivate", "1", false}),
    [](const auto& row) { return row.param.name; });

TEST_F(OLMMsgCalWriterObjectTest, TimeZoneThatIsLeftOutIsReadAllTheSame) {
    begin(appointment().element("OPFCalendarEventCopyTimeZone", "(UTC-05:00) Eastern Time"));
    writer->refusal = unknownCode;

    run();

    EXPECT_EQ(writer->timeZoneOffset, -300);
}

// --- Whole messages.

TEST(OLMMsgCalWriterTest, EmptyAppointmentHasTheRequiredPropertiesAndNothingElse) {
    const Outcome outcome = extractItem(appointment());

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_THAT(outcome.message.paths(),
                ElementsAre("__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
                            "__nameid_version1.0/__substg1.0_00030102",
                            "__nameid_version1.0/__substg1.0_00040102", "__substg1.0_10090102",
                            "__substg1.0_001A001F", propertyStream));
    EXPECT_EQ(outcome.message.stream(propertyStream),
              headerBytes(0, 0) + requiredEntriesOf(u"IPM.Appointment"));
    EXPECT_EQ(outcome.message.classId(), hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(outcome.message.stream("__substg1.0_10090102"), Bytes());
    EXPECT_EQ(outcome.message.stream("__substg1.0_001A001F"), utf16(u"IPM.Appointment"));
    for (const char* tag : {"00020102", "00030102", "00040102"}) {
        EXPECT_EQ(nameStream(outcome.message, tag), Bytes());
    }
}

TEST(OLMMsgCalWriterTest, FullAppointmentHasItsEntriesInDocumentOrderAndTheRecurrenceLast) {
    const StoredMessage message = writeItem(fullAppointment());

    // The times are 129488237990000000, 131740151470000000, 116444736000000000 and
    // 129488183990000000.
    EXPECT_EQ(message.stream(propertyStream),
              headerBytes(2, 0) + requiredEntriesOf(u"IPM.Appointment") +
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
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), utf16(u"Sea") + hex("00 00"));
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

TEST(OLMMsgCalWriterTest, StartAndEndStandUnderTwoTagsEach) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopyEndTime", "2018-06-21T00:39:08")
                      .element("OPFCalendarEventCopyStartTime", "1970-01-01T00:00:00"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x00610040, timeIn2018),
                            entry(0x80010040, time1970), entry(0x00600040, time1970)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("0E 82 00 00  06 00  00 00"
                                                   "0D 82 00 00  06 00  01 00"));
}

TEST(OLMMsgCalWriterTest, TwoStartsGiveFourEntries) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopyStartTime", "2018-06-21T00:39:08")
                      .element("OPFCalendarEventCopyStartTime", "1970-01-01T00:00:00"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x00600040, timeIn2018),
                            entry(0x80010040, time1970), entry(0x00600040, time1970)));
}

TEST(OLMMsgCalWriterTest, StartWithoutTextTakesANumberAndEndWithoutTextDoesNot) {
    const Outcome start = extractItem(appointment().element("OPFCalendarEventCopyStartTime"));
    EXPECT_THAT(entriesBehindRequired(start.message), IsEmpty());
    EXPECT_EQ(nameStream(start.message, "00030102"), hex("0D 82 00 00  06 00  00 00"));
    EXPECT_THAT(start.progress, ElementsAre(5, 5, 100)) << "the element counts";

    const Outcome end = extractItem(appointment().element("OPFCalendarEventCopyEndTime"));
    EXPECT_THAT(entriesBehindRequired(end.message), IsEmpty());
    EXPECT_EQ(nameStream(end.message, "00030102"), Bytes());
    EXPECT_THAT(end.progress, ElementsAre(5, 5, 100));
}

TEST(OLMMsgCalWriterTest, StartAndEndThatAreNoDatesAreTimeZero) {
    const StoredMessage message = writeItem(appointment()
                                                .element("OPFCalendarEventCopyStartTime", "noon")
                                                .element("OPFCalendarEventCopyEndTime", " "));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, 0), entry(0x00600040, 0), entry(0x80010040, 0),
                            entry(0x00610040, 0)));
}

// --- The reminder.

TEST(OLMMsgCalWriterTest, ReminderTimeWithoutTextIsTimeZero) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopyReminderTime")
                      .element("OPFCalendarEventCopyReminderTime", "2018-06-21T00:39:08"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, 0), entry(0x80010040, timeIn2018)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("02 85 00 00  06 00  00 00"
                                                   "02 85 00 00  06 00  01 00"));
}

namespace {

struct NumberCase {
    const char* name;
    const char* text;
    uint64_t value;
};

class OLMMsgCalWriterDeltaTest : public testing::TestWithParam<NumberCase> {};
class OLMMsgCalWriterStatusTest : public testing::TestWithParam<NumberCase> {};
class OLMMsgCalWriterTruthTest : public testing::TestWithParam<NumberCase> {};
class OLMMsgCalWriterPrivateTest : public testing::TestWithParam<NumberCase> {};

const auto caseName = [](const auto& row) { return row.param.name; };

} // namespace

TEST_P(OLMMsgCalWriterDeltaTest, SecondsBecomeMinutes) {
    const StoredMessage message =
        writeItem(appointment().element("OPFCalendarEventCopyReminderDelta", GetParam().text));

    EXPECT_THAT(entriesBehindRequired(message), ElementsAre(entry(0x80000003, GetParam().value)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("01 85 00 00  06 00  00 00"));
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
    caseName);

TEST_P(OLMMsgCalWriterTruthTest, HasReminderIsAlwaysTold) {
    const StoredMessage message =
        writeItem(appointment().element("OPFCalendarEventGetHasReminder", GetParam().text));

    EXPECT_THAT(entriesBehindRequired(message), ElementsAre(entry(0x8000000B, GetParam().value)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("03 85 00 00  06 00  00 00"));
}

TEST_P(OLMMsgCalWriterTruthTest, AllDayIsToldOnlyWhenItIs) {
    const Outcome outcome =
        extractItem(appointment().element("OPFCalendarEventGetIsAllDayEvent", GetParam().text));

    if (GetParam().value == 1) {
        EXPECT_THAT(entriesBehindRequired(outcome.message), ElementsAre(entry(0x8000000B, 1)));
        EXPECT_EQ(nameStream(outcome.message, "00030102"), hex("15 82 00 00  06 00  00 00"));
    } else {
        EXPECT_THAT(entriesBehindRequired(outcome.message), IsEmpty());
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
                         caseName);

// --- Location, privacy, status.

TEST(OLMMsgCalWriterTest, LocationIsANamedString) {
    const StoredMessage message = writeItem(appointment()
                                                .element("OPFCalendarEventCopyLocation")
                                                .element("OPFCalendarEventCopyLocation", "Pier"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x8000001F, 2), entry(0x8001001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), utf16(u"Pier"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("08 82 00 00  06 00  00 00"
                                                   "08 82 00 00  06 00  01 00"));
}

// The stream is taken on trust: writing to none is a failed write of no bytes.
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
        EXPECT_THAT(entriesBehindRequired(outcome.message), ElementsAre(entry(0x00360003, 2)));
    } else {
        EXPECT_THAT(entriesBehindRequired(outcome.message), IsEmpty());
    }
    EXPECT_EQ(outcome.progress.front(), 5) << "the element counts";
}

// 4294967297 is 2^32 and 1: the number isn't cut to 32 bits ahead of the comparison.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterPrivateTest,
    testing::Values(NumberCase{"One", "1", 2}, NumberCase{"Exponent", "1E0", 2},
                    NumberCase{"Fraction", "1.9", 2}, NumberCase{"Zero", "0", 0},
                    NumberCase{"Two", "2", 0}, NumberCase{"MinusOne", "-1", 0},
                    NumberCase{"Wide", "4294967297", 0}, NumberCase{"Word", "true", 0},
                    NumberCase{"NoText", "", 0}),
    caseName);

TEST_P(OLMMsgCalWriterStatusTest, StatusIsMapped) {
    const StoredMessage message =
        writeItem(appointment().element("OPFCalendarEventCopyFreeBusyStatus", GetParam().text));

    EXPECT_THAT(entriesBehindRequired(message), ElementsAre(entry(0x80000003, GetParam().value)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("05 82 00 00  06 00  00 00"));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterStatusTest,
    testing::Values(NumberCase{"Zero", "0", 2}, NumberCase{"One", "1", 0},
                    NumberCase{"Two", "2", 1}, NumberCase{"Three", "3", 3},
                    NumberCase{"Four", "4", 2}, NumberCase{"MinusOne", "-1", 2},
                    NumberCase{"Exponent", "3E0", 3}, NumberCase{"Wide", "4294967297", 2},
                    NumberCase{"NoNumber", "away", 2}, NumberCase{"NoText", "", 2}),
    caseName);

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

TEST_P(OLMMsgCalWriterZoneTest, TextIsKeptWholeAndReadForItsOffset) {
    const Bytes text = utf16(toUtf16(GetParam().text));
    begin(appointment().element("OPFCalendarEventCopyTimeZone", GetParam().text));

    run();

    EXPECT_EQ(writer->timeZoneOffset, GetParam().offset);
    EXPECT_THAT(added(), ElementsAre(entry(0x8000001F, text.size() + 2)));
    EXPECT_EQ(message().stream("__substg1.0_8000001F"), text);
}

// The numbers wrap at 32 bits: 35791395 hours are 2^31 and 52 minutes.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalWriterZoneTest,
    testing::Values(ZoneCase{"West", "(UTC-05:00) Eastern Time (US & Canada)", -300},
                    ZoneCase{"East", "(UTC+05:30) Chennai", 330},
                    ZoneCase{"HalfHourWest", "(UTC-03:30) Newfoundland", -210},
                    ZoneCase{"QuarterHourEast", "(UTC+05:45) Kathmandu", 345},
                    ZoneCase{"FarEast", "+14:00", 840}, ZoneCase{"Zero", "+00:00", 0},
                    ZoneCase{"NoSign", "(UTC) Dublin 10:30", 0}, ZoneCase{"NoText", "", 0},
                    ZoneCase{"PlusBehindAMinus", "GMT-3 or +2:00", 120},
                    ZoneCase{"MinusBehindAPlus", "+2:00 or -3", 120},
                    ZoneCase{"FirstColonAheadOfTheSign", "Zone:7 is UTC-5:30", -307},
                    ZoneCase{"SignWithoutColonAndNoNumberAhead", "UTC+2", 120},
                    ZoneCase{"SignWithoutColonBehindANumber", "15 is UTC-2", -135},
                    ZoneCase{"SignAtTheStartWithoutColon", "-5", -295},
                    ZoneCase{"PlusAtTheStartWithoutColon", "+5", 305},
                    ZoneCase{"SignAlone", "+", 0}, ZoneCase{"SignAtTheEnd", "12 -", -12},
                    ZoneCase{"TwoSigns", "+-5:00", -300}, ZoneCase{"TwoMinuses", "--5:00", 300},
                    ZoneCase{"ColonAtTheEnd", "+5:", 300},
                    ZoneCase{"NegativeMinutes", "+5:-10", 290},
                    ZoneCase{"SpacesAndExponent", "- 1E1: 3E1", -630},
                    ZoneCase{"NoNumbers", "+a:b", 0}, ZoneCase{"Letters", "Mid-Atlantic", 0},
                    ZoneCase{"HoursThatWrap", "+35791395:00", -2147483596},
                    ZoneCase{"HoursOfTwoTo32", "+4294967297:00", 60},
                    ZoneCase{"HoursOfTwoTo63", "+9223372036854775807:00", -60},
                    ZoneCase{"HoursBelowTwoTo63", "+-9223372036854775808:00", 0},
                    ZoneCase{"SmallestThatCantBeNegated", "-0:2147483648", -2147483647 - 1},
                    ZoneCase{"SumThatWraps", "+35791394:2147483647", -9}),
    [](const auto& row) { return row.param.name; });

TEST_F(OLMMsgCalWriterObjectTest, ZoneWithoutTextOrSignKeepsTheOffset) {
    begin(appointment()
              .element("OPFCalendarEventCopyTimeZone", "+2:00")
              .element("OPFCalendarEventCopyTimeZone")
              .element("OPFCalendarEventCopyTimeZone", "Dublin"));

    run();

    EXPECT_EQ(writer->timeZoneOffset, 120);
    EXPECT_THAT(added(),
                ElementsAre(entry(0x8000001F, 12), entry(0x8001001F, 2), entry(0x8002001F, 14)));
}

TEST(OLMMsgCalWriterTest, TimeZoneIsANamedProperty) {
    const StoredMessage message =
        writeItem(appointment().element("OPFCalendarEventCopyTimeZone", "Dublin"));

    EXPECT_EQ(nameStream(message, "00030102"), hex("34 82 00 00  06 00  00 00"));
}

// --- What has no handler of its own.

TEST(OLMMsgCalWriterTest, SubjectBodyAndModificationAreCopied) {
    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopySummary", "RE: Ebb")
                      .element("OPFCalendarEventCopyDescriptionPlain", "Bring boots")
                      .element("OPFCalendarEventCopyModDate", "2018-06-21T00:39:08")
                      .element("OPFCalendarEventCopyModDate"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x0037001F, 16), entry(0x1000001F, 24),
                            entry(0x30080040, timeIn2018), entry(0x30080040, 0)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"RE: Ebb"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"Bring boots"));
}

TEST(OLMMsgCalWriterTest, HtmlDescriptionIsDroppedAndNotCounted) {
    const Outcome outcome =
        extractItem(appointment().element("OPFCalendarEventCopyDescription", "<b>rich</b>"));

    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
    EXPECT_FALSE(outcome.message.has("__substg1.0_10130102"));
    EXPECT_THAT(entriesBehindRequired(outcome.message), IsEmpty());
}

// --- The item's end.

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

TEST(OLMMsgCalWriterTest, AppointmentEndsWithItsNineteenthElementWhateverFollows) {
    ItemDocument repeated = appointment();
    for (int count = 0; count < 19; ++count) {
        repeated.element("OPFCalendarEventGetIsPrivate", "1");
    }
    repeated.element("OPFCalendarEventCopySummary", "unread");

    const Outcome outcome = extractItem(repeated);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress.back(), 100);
    EXPECT_THAT(outcome.progress, SizeIs(37));
    EXPECT_THAT(entriesBehindRequired(outcome.message),
                AllOf(SizeIs(19), Each(entry(0x00360003, 2))));
    EXPECT_FALSE(outcome.message.has("__substg1.0_0037001F"));
}

TEST(OLMMsgCalWriterTest, SecondAppointmentOfADocumentIsNotTouched) {
    ItemDocument item =
        appointment().element("OPFCalendarEventCopySummary", "first").close().open("appointment");
    addWeekly(item, calRecurrenceElement);

    const StoredMessage message = writeItem(item.element("OPFCalendarEventCopySummary", "second"));

    EXPECT_THAT(message, HasText(0x0037001F, u"first"));
    EXPECT_THAT(entriesBehindRequired(message), SizeIs(1));
}

TEST(OLMMsgCalWriterTest, CancelledAppointmentHasNeitherRecurrenceNorPropertyStream) {
    ItemRun run;
    run.answer = [](int32_t value) { return value == 84 ? 1 : 0; };

    const Outcome outcome = extractItem(fullAppointment(), run);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress.back(), 84);
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_FALSE(outcome.message.has("__substg1.0_800A0102"));
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.handlesLeftOpen, 0);
}

// --- Text of every length around the size of a chunk.

namespace {

class OLMMsgCalWriterLengthTest : public testing::TestWithParam<size_t> {};

} // namespace

TEST_P(OLMMsgCalWriterLengthTest, StringsAreWhole) {
    const std::u16string text = patternText(GetParam());
    const uint64_t size = 2 * GetParam() + 2;

    const StoredMessage message =
        writeItem(appointment()
                      .element("OPFCalendarEventCopyDescriptionPlain", text)
                      .element("OPFCalendarEventCopyLocation", text)
                      .element("OPFCalendarEventCopySummary", text)
                      .element("OPFCalendarEventCopyTimeZone", text)
                      .open("OPFCalendarEventCopyCategoryList")
                      .element("category")
                      .attribute("OPFCategoryCopyName", text));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x1000001F, size), entry(0x8000001F, size),
                            entry(0x0037001F, size), entry(0x8001001F, size),
                            entry(0x8002101F, 4)));
    for (const char* tag : {"1000001F", "8000001F", "0037001F", "8001001F"}) {
        EXPECT_EQ(message.stream(std::string("__substg1.0_") + tag), utf16(text));
    }
    EXPECT_EQ(message.stream("__substg1.0_8002101F-00000000"), utf16(text) + hex("00 00"));
}

TEST_P(OLMMsgCalWriterLengthTest, TextThatIsNoDateNumberOrTruthIsTheDefault) {
    const std::u16string text(GetParam(), u'x');

    const StoredMessage message = writeItem(appointment()
                                                .element("OPFCalendarEventCopyModDate", text)
                                                .element("OPFCalendarEventCopyReminderTime", text)
                                                .element("OPFCalendarEventCopyReminderDelta", text)
                                                .element("OPFCalendarEventGetHasReminder", text)
                                                .element("OPFCalendarEventCopyFreeBusyStatus", text)
                                                .element("OPFCalendarEventGetIsAllDayEvent", text)
                                                .element("OPFCalendarEventGetIsPrivate", text));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x30080040, 0), entry(0x80000040, 0), entry(0x80010003, 0),
                            entry(0x8002000B, 0), entry(0x80030003, 2)));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgCalWriterLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000));

// --- What the host and the document may do.

TEST(OLMMsgCalWriterTest, NoHostFailureEscapesOrLeaks) {
    expectNoHostFailureEscapes(fullAppointment(), {}, 1);
}

TEST(OLMMsgCalWriterTest, NoShortWriteEscapesOrLeaks) {
    expectNoShortWriteEscapes(fullAppointment());
}

TEST(OLMMsgCalWriterTest, AppointmentWithoutARecurrenceIsFinishedWhereverTheDocumentBreaks) {
    const ItemDocument item = appointment()
                                  .open("OPFCalendarEventCopyAttendeeList")
                                  .element("appointmentAttendee")
                                  .attribute("OPFCalendarAttendeeAddress", "a@x")
                                  .close()
                                  .element("OPFCalendarEventCopyLocation", "Pier")
                                  .element("OPFCalendarEventCopyOrganizer", "o@x")
                                  .element("OPFCalendarEventCopyStartTime", "2011-05-02")
                                  .element("OPFCalendarEventCopyTimeZone", "-05:00");
    expectItemIsFinishedWhereverTheDocumentBreaks(item, {}, [](const StoredMessage& message) {
        const Bytes begin = headerBytes(countStorages(message, "__recip_version1.0_#"), 0) +
                            requiredEntriesOf(u"IPM.Appointment");
        EXPECT_EQ(message.stream(propertyStream).part(0, begin.size()), begin);
    });
}

// Without a root the beginning reads no tag, so the item's own one comes to the first step, as what
// ends it.
TEST(OLMMsgCalWriterTest, MissingRootStorageEndsTheAppointmentAtItsOwnTag) {
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateRoot, 0); };

    const Outcome outcome = extractItem(fullAppointment(), run);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_FALSE(outcome.message.hasRoot());
    EXPECT_EQ(outcome.openHandles, 0);
    EXPECT_EQ(outcome.openReaders, 0);
}
