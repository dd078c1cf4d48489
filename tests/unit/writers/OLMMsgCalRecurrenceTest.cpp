// The recurrence of OLMMsgCalWriter.

#include "tests/unit/storage/Thrown.h"
#include "tests/unit/writers/CalMessages.h"
#include "tests/unit/writers/MailMessages.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* startElement = "OPFCalendarEventCopyStartTime";
constexpr const char* endElement = "OPFCalendarEventCopyEndTime";
constexpr const char* zoneElement = "OPFCalendarEventCopyTimeZone";

class OLMMsgCalRecurrenceObjectTest : public CalWriterTest {
protected:
    // An appointment of nothing but a recurrence, read to its end.
    void runDaily() {
        ItemDocument item = appointment();
        begin(addDaily(item, calRecurrenceElement));
        run();
    }
};

} // namespace

TEST(OLMMsgCalRecurrenceTest, AppointmentWithoutARecurrenceHasNone) {
    const StoredMessage message = writeItem(appointment()
                                                .element(startElement, "2011-05-02T14:00:00")
                                                .element(endElement, "2011-05-02T15:30:00")
                                                .element(zoneElement, "(UTC-05:00)"));

    EXPECT_EQ(nameStream(message, "00030102"), hex("0D 82 00 00  06 00  00 00"
                                                   "0E 82 00 00  06 00  01 00"
                                                   "34 82 00 00  06 00  02 00"));
    EXPECT_THAT(message.names(),
                ElementsAre("__nameid_version1.0", "__substg1.0_10090102", "__substg1.0_001A001F",
                            "__substg1.0_8002001F", propertyStream));
}

TEST(OLMMsgCalRecurrenceTest, RecurrenceIsTheLastEntryAndTheOnlyMarkOfIt) {
    ItemDocument item = appointment();
    addWeekly(item, calRecurrenceElement);
    item.element(zoneElement, "(UTC-05:00)")
        .element(endElement, "2011-05-02T15:30:00")
        .element(startElement, "2011-05-02T14:00:00");

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x8000001F, 24), entry(0x80010040, 129488237990000000),
                            entry(0x00610040, 129488237990000000),
                            entry(0x80020040, 129488183990000000),
                            entry(0x00600040, 129488183990000000), entry(0x80030102, 80)));
    EXPECT_EQ(message.stream("__substg1.0_80030102"), weeklyValue());
    EXPECT_EQ(nameStream(message, "00030102").part(24, 8), hex("16 82 00 00  06 00  03 00"));
}

TEST(OLMMsgCalRecurrenceTest, EveryFormOfRecurrenceHasItsSize) {
    using Adder = ItemDocument& (*)(ItemDocument&, const char*);
    struct Form {
        Adder add;
        Bytes value;
        uint64_t size;
    };
    const Form forms[] = {{addDaily, dailyValue(90, 150), 76},
                          {addWeekly, weeklyValueWithoutZone(90, 150), 80},
                          {addMonthly, monthlyValue(90, 150), 84}};
    for (const Form& form : forms) {
        SCOPED_TRACE(form.size);
        const bool isWeekly = form.size == 80;
        ItemDocument item =
            appointment()
                .element(startElement, isWeekly ? "2011-05-02T06:30:00" : "2018-06-18T01:30:00")
                .element(endElement, isWeekly ? "2011-05-02T07:30:00" : "2018-06-18T02:30:00");
        form.add(item, calRecurrenceElement);

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80020102"), form.value);
        EXPECT_EQ(entriesBehindRequired(message).back(), entry(0x80020102, form.size));
    }
}

// All 24 orders of the four elements.
TEST(OLMMsgCalRecurrenceTest, RecurrenceGivesTheSameBytesWhereverItStands) {
    std::array<int, 4> order = {0, 1, 2, 3};
    do {
        SCOPED_TRACE(testing::PrintToString(order));
        ItemDocument item = appointment();
        for (const int element : order) {
            switch (element) {
            case 0:
                addWeekly(item, calRecurrenceElement);
                break;
            case 1:
                item.element(startElement, "2011-05-02T14:00:00");
                break;
            case 2:
                item.element(endElement, "2011-05-02T15:30:00");
                break;
            default:
                item.element(zoneElement, "(UTC-05:00)");
                break;
            }
        }

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80030102"), weeklyValue());
        EXPECT_EQ(entriesBehindRequired(message).back(), entry(0x80030102, 80));
    } while (std::ranges::next_permutation(order).found);
}

TEST(OLMMsgCalRecurrenceTest, AppointmentWithoutATimeZoneHasTheOffsetZero) {
    ItemDocument item = appointment()
                            .element(startElement, "2011-05-02T14:00:00")
                            .element(endElement, "2011-05-02T15:30:00");
    addWeekly(item, calRecurrenceElement);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80020102"), weeklyValueWithoutZone(540, 630));
}

TEST(OLMMsgCalRecurrenceTest, ZoneWithoutASignHasTheOffsetZero) {
    ItemDocument item = appointment()
                            .element(startElement, "2011-05-02T14:00:00")
                            .element(endElement, "2011-05-02T15:30:00")
                            .element(zoneElement, "Eastern Time");
    addWeekly(item, calRecurrenceElement);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80030102"), weeklyValueWithoutZone(540, 630));
}

TEST(OLMMsgCalRecurrenceTest, SecondStartIsTheOneThatCounts) {
    ItemDocument item = appointment()
                            .element(startElement, "2011-05-07T10:00:00")
                            .element(startElement, "2011-05-02T14:00:00")
                            .element(endElement, "2011-05-02T15:30:00")
                            .element(zoneElement, "-05:00");
    addWeekly(item, calRecurrenceElement);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80040102"), weeklyValue());
}

TEST(OLMMsgCalRecurrenceTest, LastOfTwoRecurrencesCounts) {
    ItemDocument item = appointment()
                            .element(startElement, "2018-06-18T01:30:00")
                            .element(endElement, "2018-06-18T02:30:00");
    addWeekly(item, calRecurrenceElement);
    addDaily(item, calRecurrenceElement);

    const StoredMessage message = writeItem(item);

    EXPECT_EQ(message.stream("__substg1.0_80020102"), dailyValue(90, 150));
    EXPECT_FALSE(message.has("__substg1.0_80030102"));
    EXPECT_THAT(entriesBehindRequired(message), SizeIs(5));
}

// The elements of a recurrence have names of their own, but what lies inside may be anything.
TEST(OLMMsgCalRecurrenceTest, RecurrenceIsPassedOverOnTheFirstWay) {
    ItemDocument item = appointment().open(calRecurrenceElement);
    addDailyContents(item)
        .element("OPFCalendarEventCopySummary", "inside")
        .close()
        .element("OPFCalendarEventCopyLocation", "Pier");

    const Outcome outcome = extractItem(item);

    EXPECT_THAT(outcome.progress, ElementsAre(5, 10, 10, 100));
    EXPECT_THAT(entriesBehindRequired(outcome.message),
                ElementsAre(entry(0x8000001F, 10), entry(0x80010102, 76)));
}

TEST(OLMMsgCalRecurrenceTest, RecurrenceBelowUnknownElementsIsFound) {
    ItemDocument item = appointment()
                            .element(startElement, "2018-06-18T01:30:00")
                            .element(endElement, "2018-06-18T02:30:00");
    for (int depth = 0; depth < 20; ++depth) {
        item.open("stranger");
    }
    addDaily(item, calRecurrenceElement);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80020102"), dailyValue(90, 150));
}

// --- What can't be turned, and failures of the host.

TEST(OLMMsgCalRecurrenceTest, RecurrenceThatCannotBeTurnedFailsTheRequest) {
    ItemDocument noDays = appointment()
                              .open(calRecurrenceElement)
                              .element("OPFRecurrenceCopyStartDate", "2018-06-18")
                              .open("OPFRecurrencePattern")
                              .element("OPFRecurrencePatternInterval", "1")
                              .element("OPFRecurrencePatternType", "OPFRecurrencePatternWeekly");
    ItemDocument noInterval = appointment()
                                  .open(calRecurrenceElement)
                                  .element("OPFRecurrenceCopyStartDate", "2018-06-18");
    const ItemDocument items[] = {appointment().element(calRecurrenceElement), noDays, noInterval};
    for (const ItemDocument& item : items) {
        const Outcome outcome = extractItem(item);

        EXPECT_EQ(outcome.result, VwSpecialFailed);
        EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
        EXPECT_EQ(outcome.progress.back(), 100) << "the item was read to its end";
        EXPECT_FALSE(outcome.message.has(propertyStream));
        EXPECT_FALSE(outcome.message.has("__substg1.0_80000102"));
        EXPECT_EQ(outcome.openHandles, 0);
        EXPECT_EQ(outcome.openReaders, 0);
    }
}

TEST_F(OLMMsgCalRecurrenceObjectTest, RecurrenceThatCannotBeTurnedThrowsOutOfTheEnd) {
    begin(appointment().element(calRecurrenceElement));
    run();

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), unknownCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_THAT(host.callTexts(CallKind::CreateStream), IsEmpty());
}

TEST_F(OLMMsgCalRecurrenceObjectTest, RefusedRecurrenceTableThrowsOutOfTheEnd) {
    runDaily();
    host.failCall(CallKind::AddTagMap, 0, -3);

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), 0xFFFFFC18u);
    EXPECT_FALSE(message().has(propertyStream));
}

TEST_F(OLMMsgCalRecurrenceObjectTest, RecurrenceStreamThatCannotBeMadeIsLeftOutAlone) {
    runDaily();
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_FALSE(message().has("__substg1.0_80000102"));
    EXPECT_EQ(message().stream(propertyStream),
              headerBytes(0, 0) + requiredEntriesOf(u"IPM.Appointment"));
    EXPECT_EQ(nameStream(message(), "00030102"), hex("16 82 00 00  06 00  00 00"))
        << "it has its number all the same";
}

TEST(OLMMsgCalRecurrenceTest, ShortWriteOfTheRecurrenceThrowsOutOfTheEnd) {
    // Of each of the value's writes in turn.
    constexpr int writeCount = 22;
    for (int failing = 0; failing < writeCount; ++failing) {
        SCOPED_TRACE(failing);
        ItemDocument item = appointment();
        FakeHost host;
        host.entry("Local/items.xml", addDaily(item, calRecurrenceElement));
        SODOSPECIALARC request{};
        request.output = host.newOutput();
        OLMXMLParser parser(host.openArchive(), 0);
        OLMXMLTag root;
        ASSERT_EQ(parser.nextTag(root), 1);
        OpenCalWriter writer(&request);
        ASSERT_EQ(writer.initilizeWriter(parser), 0u);
        while (writer.writeNode(parser) != 100) {
        }
        const int before = host.openHandles();
        host.shortenWrite(failing, 1, 0);

        EXPECT_EQ(thrownCode([&] { writer.finalizeNode(parser); }), shortWriteCode);

        EXPECT_EQ(host.openHandles(), before);
        EXPECT_FALSE(host.message(request.output).has(propertyStream));
    }
}

TEST_F(OLMMsgCalRecurrenceObjectTest, ReaderGoesBackOnlyForARecurrence) {
    begin(appointment().element("OPFCalendarEventCopySummary", "Ebb"));
    run();

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(host.countOf(CallKind::RestoreStateInfo), 0);
    EXPECT_EQ(host.countOf(CallKind::GetStateInfo), 0);
}

TEST(OLMMsgCalRecurrenceTest, AppointmentFailsOnlyWhereItsRecurrenceIsCut) {
    ItemDocument item = appointment().element(startElement, "2018-06-18T01:30:00");
    addDaily(item, calRecurrenceElement);
    expectOnlyACutRecurrenceFails(item.element(zoneElement, "+01:00"), calRecurrenceElement);
}
