// Tests of OLMMsgCalWriter's recurrence.

#include "tests/unit/writers/CalMessages.h"

using namespace fakehost;
using testing::ElementsAre;

namespace {

class OLMMsgCalRecurrenceObjectTest : public CalWriterTest {};

} // namespace

TEST(OLMMsgCalRecurrenceTest, AppointmentWithoutARecurrenceHasNone) {
    const StoredMessage message = writeItem(appointment()
                                                .element(calStart, "2011-05-02T14:00:00")
                                                .element(calEnd, "2011-05-02T15:30:00")
                                                .element(calZone, "(UTC-05:00)"));

    EXPECT_EQ(nameStream(message, "00030102"), hex("0D 82 00 00  06 00  00 00"
                                                   "0E 82 00 00  06 00  01 00"
                                                   "34 82 00 00  06 00  02 00"));
    EXPECT_THAT(message.names(),
                ElementsAre("__nameid_version1.0", "__substg1.0_10090102", "__substg1.0_001A001F",
                            "__substg1.0_8002001F", propertyStream));
}

TEST(OLMMsgCalRecurrenceTest, RecurrenceIsTheLastEntryAndTheOnlyTraceOfIt) {
    ItemDocument item = appointment();
    addWeekly(item, calRecurrence);
    item.element(calZone, "(UTC-05:00)")
        .element(calEnd, "2011-05-02T15:30:00")
        .element(calStart, "2011-05-02T14:00:00");

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x8000001F, 24), entry(0x80010040, 129488237990000000),
                            entry(0x00610040, 129488237990000000),
                            entry(0x80020040, 129488183990000000),
                            entry(0x00600040, 129488183990000000), entry(0x80030102, 80)));
    EXPECT_EQ(message.stream("__substg1.0_80030102"), weeklyValue());
    EXPECT_EQ(nameStream(message, "00030102").part(24, 8), hex("16 82 00 00  06 00  03 00"));
}

TEST(OLMMsgCalRecurrenceTest, ZoneWithoutASignHasTheOffsetZero) {
    ItemDocument item = appointment()
                            .element(calStart, "2011-05-02T14:00:00")
                            .element(calEnd, "2011-05-02T15:30:00")
                            .element(calZone, "Eastern Time");
    addWeekly(item, calRecurrence);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80030102"), weeklyValueWithoutZone(540, 630));
}

TEST(OLMMsgCalRecurrenceTest, SecondStartIsUsed) {
    ItemDocument item = appointment()
                            .element(calStart, "2011-05-07T10:00:00")
                            .element(calStart, "2011-05-02T14:00:00")
                            .element(calEnd, "2011-05-02T15:30:00")
                            .element(calZone, "-05:00");
    addWeekly(item, calRecurrence);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80040102"), weeklyValue());
}

// A recurrence may contain any elements, also those of an appointment.
TEST(OLMMsgCalRecurrenceTest, RecurrenceIsSkippedAtFirst) {
    ItemDocument item = appointment().open(calRecurrence);
    addDailyContents(item)
        .element("OPFCalendarEventCopySummary", "inside")
        .close()
        .element("OPFCalendarEventCopyLocation", "Pier");

    const Outcome outcome = extractItem(item);

    EXPECT_THAT(outcome.progress, ElementsAre(5, 10, 10, 100));
    EXPECT_THAT(ownEntries(outcome.message),
                ElementsAre(entry(0x8000001F, 10), entry(0x80010102, 76)));
}

TEST(OLMMsgCalRecurrenceTest, RecurrenceBelowUnknownElementsIsFound) {
    ItemDocument item = appointment()
                            .element(calStart, "2018-06-18T01:30:00")
                            .element(calEnd, "2018-06-18T02:30:00");
    for (int depth = 0; depth < 20; ++depth) {
        item.open("stranger");
    }
    addDaily(item, calRecurrence);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80020102"), dailyValue(90, 150));
}

TEST_F(OLMMsgCalRecurrenceObjectTest, ReaderReturnsOnlyToARecurrence) {
    begin(appointment().element("OPFCalendarEventCopySummary", "Ebb"));
    run();

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(host.countOf(CallKind::RestoreStateInfo), 0);
    EXPECT_EQ(host.countOf(CallKind::GetStateInfo), 0);
}
