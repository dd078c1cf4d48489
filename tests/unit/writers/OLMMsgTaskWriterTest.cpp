#include "filter/writers/OLMMsgTaskWriter.h"

#include "tests/unit/core/Wide.h"
#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/RecurringItems.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* taskCompleted = "OPFTaskCopyCompletedDateTime";

constexpr uint64_t oneAsDouble = 0x3FF0000000000000;
constexpr uint64_t timeOfDue = 131739479990000000; // 2018-06-20T06:00:00

class OpenTaskWriter : public OpenRecurringWriter<OLMMsgTaskWriter> {
public:
    using OpenRecurringWriter::OpenRecurringWriter;

    using OLMMsgTaskWriter::handleNamedTaskDate;
    using OLMMsgTaskWriter::handleTaskCompletion;
};

class OLMMsgTaskWriterObjectTest : public WriterTest<OpenTaskWriter> {};

} // namespace

// --- The writer itself.

TEST_F(OLMMsgTaskWriterObjectTest, InitializationForgetsARecurrence) {
    openDocument(task());
    writer->hasRecurrence = true;

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_FALSE(writer->hasRecurrence);
}

TEST_F(OLMMsgTaskWriterObjectTest, CompletionMapsItsThreePropertiesInOrder) {
    begin(task());

    writer->handleTaskCompletion();

    EXPECT_THAT(added(), ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                                     entry(0x80020005, oneAsDouble)));
}

TEST_F(OLMMsgTaskWriterObjectTest, UnknownDateThrows) {
    begin(task());

    EXPECT_EQ(thrownCode([&] { writer->handleNamedTaskDate(0x81060040, wide(u"2018-06-20")); }),
              unknownCode);
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgTaskWriterObjectTest, EntryThatCannotBeAddedEndsTheItem) {
    begin(task().element(taskDue, "2018-06-20"));
    writer->refusal = qor::errorIndex;

    EXPECT_EQ(thrownCode([&] { run(); }), qor::errorIndex);
}

TEST_F(OLMMsgTaskWriterObjectTest, LaterOfDueAndCompletedDateIsTheEnd) {
    begin(task()
              .element(taskCompleted, "2018-06-21")
              .element(taskDue, "2018-06-20")
              .element(taskStart, "2018-06-18"));
    run();

    EXPECT_EQ(writer->endText, wide(u"2018-06-20"));
    EXPECT_EQ(writer->startText, wide(u"2018-06-18"));
}

TEST_F(OLMMsgTaskWriterObjectTest, CompletedDateAfterTheDueDateIsTheEnd) {
    begin(task().element(taskDue, "2018-06-20").element(taskCompleted, "2018-06-21"));
    run();

    EXPECT_EQ(writer->endText, wide(u"2018-06-21"));
    EXPECT_EQ(writer->startText.length(), 0);
}

// --- Whole messages.

TEST(OLMMsgTaskWriterTest, FullTaskHasItsEntriesInDocumentOrderAndTheRecurrenceLast) {
    const StoredMessage message = writeItem(fullTask());

    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(taskKind) + hex("1F 10 00 80  06 00 00 00  04 00 00 00 00 00 00 00"
                                          "0B 00 01 80  06 00 00 00  01 00 00 00 00 00 00 00"
                                          "03 00 02 80  06 00 00 00  02 00 00 00 00 00 00 00"
                                          "05 00 03 80  06 00 00 00  00 00 00 00 00 00 F0 3F"
                                          "40 00 04 80  06 00 00 00  80 87 06 43 F8 08 D4 01"
                                          "40 00 05 80  06 00 00 00  80 D9 B2 EB 5B 08 D4 01"
                                          "40 00 08 30  06 00 00 00  80 E9 A5 D4 DE B1 9D 01"
                                          "1F 00 37 00  06 00 00 00  1A 00 00 00 00 00 00 00"
                                          "1F 00 00 10  06 00 00 00  12 00 00 00 00 00 00 00"
                                          "40 00 06 80  06 00 00 00  00 80 3E D5 DE B1 9D 01"
                                          "03 00 17 00  06 00 00 00  03 00 00 00 00 00 00 00"
                                          "02 01 07 80  06 00 00 00  4C 00 00 00 00 00 00 00"));
}

TEST(OLMMsgTaskWriterTest, FullTaskHasItsStreamsInTheOrderOfWriting) {
    const StoredMessage message = writeItem(fullTask());

    EXPECT_THAT(message.names(),
                ElementsAre("__nameid_version1.0", "__substg1.0_10090102", "__substg1.0_001A001F",
                            "__substg1.0_8000101F", "__substg1.0_8000101F-00000000",
                            "__substg1.0_0037001F", "__substg1.0_1000001F", "__substg1.0_80070102",
                            propertyStream));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), hex("08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Tar the boat"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"twice\n \n"));
    // From 2018-06-18 back to 1970-01-01T00:00:01, 25487999 minutes, and on to 2018-06-20T06:00.
    EXPECT_EQ(message.stream("__substg1.0_80070102"), dailyValue(0U - 25487999U, 3240));
}

TEST(OLMMsgTaskWriterTest, FullTaskNamesItsPropertiesInTheTaskSet) {
    const StoredMessage message = writeItem(fullTask());

    EXPECT_EQ(nameStream(message, "00020102"),
              hex("03 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("00 00 00 00  05 00  00 00"
                                                   "1C 81 00 00  06 00  01 00"
                                                   "01 81 00 00  06 00  02 00"
                                                   "02 81 00 00  06 00  03 00"
                                                   "0F 81 00 00  06 00  04 00"
                                                   "05 81 00 00  06 00  05 00"
                                                   "04 81 00 00  06 00  06 00"
                                                   "16 81 00 00  06 00  07 00"));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    EXPECT_EQ(nameStream(message, "10150102"), hex("3B 4D DA 2E  05 00  00 00"));
    EXPECT_EQ(nameStream(message, "10040102"), hex("1C 81 00 00  06 00  01 00"));
    EXPECT_EQ(nameStream(message, "10100102"), hex("01 81 00 00  06 00  02 00"));
    EXPECT_EQ(nameStream(message, "100D0102"), hex("02 81 00 00  06 00  03 00"));
    EXPECT_EQ(nameStream(message, "10120102"), hex("0F 81 00 00  06 00  04 00"));
    EXPECT_EQ(nameStream(message, "100C0102"), hex("05 81 00 00  06 00  05 00"));
    EXPECT_EQ(nameStream(message, "100B0102"), hex("04 81 00 00  06 00  06 00"));
    EXPECT_EQ(nameStream(message, "10190102"), hex("16 81 00 00  06 00  07 00"));
    EXPECT_THAT(message.names("__nameid_version1.0"), SizeIs(11));
}

// --- Single elements.

TEST(OLMMsgTaskWriterTest, CompletedDateMakesThreeEntriesAndThenTheDate) {
    const StoredMessage message = writeItem(task().element(taskCompleted, "2018-06-21T00:39:08"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, timeIn2018)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("1C 81 00 00  06 00  00 00"
                                                   "01 81 00 00  06 00  01 00"
                                                   "02 81 00 00  06 00  02 00"
                                                   "0F 81 00 00  06 00  03 00"));
}

TEST(OLMMsgTaskWriterTest, TwoCompletedDatesMakeEightEntries) {
    const StoredMessage message = writeItem(task()
                                                .element(taskCompleted, "2018-06-21T00:39:08")
                                                .element(taskCompleted, "2018-06-20T06:00:00"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, timeIn2018),
                            entry(0x8004000B, 1), entry(0x80050003, 2),
                            entry(0x80060005, oneAsDouble), entry(0x80070040, timeOfDue)));
}

TEST(OLMMsgTaskWriterTest, TaskWithoutACompletedDateHasNoStatus) {
    const StoredMessage message = writeItem(
        task().element(taskStart, "2018-06-21T00:39:08").element(taskDue, "2018-06-20T06:00:00"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x80010040, timeOfDue)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("04 81 00 00  06 00  00 00"
                                                   "05 81 00 00  06 00  01 00"));
}

TEST(OLMMsgTaskWriterTest, DatesWithoutTextAreTimeZero) {
    const StoredMessage message =
        writeItem(task().element(taskStart).element(taskDue).element("OPFTaskCopyModDate"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, 0), entry(0x80010040, 0), entry(0x30080040, 0)));
}

TEST(OLMMsgTaskWriterTest, CompletedDateWithoutTextCompletesTheTaskToo) {
    const StoredMessage message = writeItem(task().element(taskCompleted));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, 0)));
}

TEST(OLMMsgTaskWriterTest, DateWithoutTextRepeatsThePreviousText) {
    const StoredMessage message = writeItem(task()
                                                .element(taskStart, "2018-06-21T00:39:08")
                                                .element(taskStart)
                                                .element(taskCompleted, "2018-06-20T06:00:00")
                                                .element(taskDue));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x80010040, timeIn2018),
                            entry(0x8002000B, 1), entry(0x80030003, 2),
                            entry(0x80040005, oneAsDouble), entry(0x80050040, timeOfDue),
                            entry(0x80060040, timeOfDue)));
}

TEST(OLMMsgTaskWriterTest, PriorityIsCopiedAsANumber) {
    const StoredMessage message = writeItem(task()
                                                .element("OPFTaskGetPriority", "5")
                                                .element("OPFTaskGetPriority", "1E0")
                                                .element("OPFTaskGetPriority", "-1")
                                                .element("OPFTaskGetPriority", "high"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x00170003, 5), entry(0x00170003, 1),
                            entry(0x00170003, 0xFFFFFFFF), entry(0x00170003, 0)));
}

TEST(OLMMsgTaskWriterTest, CategoriesAreANamedProperty) {
    ItemDocument item = task();
    const StoredMessage message =
        writeItem(addCategories(item, "OPFTaskCopyCategoryList", {"Sea", "Boat"}));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000101F, 8)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), hex("08 00 00 00  0A 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000001"), terminated(u"Boat"));
}

// --- The recurrence.

TEST(OLMMsgTaskWriterTest, TaskWithoutARecurrenceHasNone) {
    const Outcome outcome = extractItem(task().element(taskStart, "2018-06-18T09:00:00"));

    EXPECT_THAT(ownEntries(outcome.message), SizeIs(1));
    EXPECT_THAT(outcome.message.names(), SizeIs(4));
}

TEST(OLMMsgTaskWriterTest, RecurrenceTakesTheLaterOfDueAndCompletedDateAsTheEnd) {
    ItemDocument dueLast = task()
                               .element(taskStart, "2018-06-18T01:30:00")
                               .element(taskCompleted, "2018-06-18T04:00:00")
                               .element(taskDue, "2018-06-18T02:30:00");
    addDaily(dueLast, taskRecurrence);
    EXPECT_EQ(writeItem(dueLast).stream("__substg1.0_80060102"), dailyValue(90, 150));

    ItemDocument completedLast = task()
                                     .element(taskStart, "2018-06-18T01:30:00")
                                     .element(taskDue, "2018-06-18T02:30:00")
                                     .element(taskCompleted, "2018-06-18T04:00:00");
    addDaily(completedLast, taskRecurrence);
    EXPECT_EQ(writeItem(completedLast).stream("__substg1.0_80060102"), dailyValue(90, 240));
}

// Empty texts mean 1601-01-01T00:00:01: 152474 days before the start, minus one second.
TEST(OLMMsgTaskWriterTest, RecurrenceWithoutItemDatesTakesEmptyTexts) {
    ItemDocument item = task();
    addDaily(item, taskRecurrence);

    const StoredMessage message = writeItem(item);

    const uint32_t offset = 0U - (152474U * 1440 - 1);
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x80000102, 76)));
    EXPECT_EQ(message.stream("__substg1.0_80000102"), dailyValue(offset, offset));
}

TEST(OLMMsgTaskWriterTest, RecurrenceIsSkippedAtFirst) {
    ItemDocument item = task();
    addDaily(item, taskRecurrence);
    item.element("OPFTaskCopyName", "Tar the boat");

    EXPECT_THAT(extractItem(item).progress, ElementsAre(9, 18, 18, 100));
}

// --- Progress.

TEST(OLMMsgTaskWriterTest, ProgressCountsTheElementsOfTheTable) {
    const Outcome outcome = extractItem(task()
                                            .open("OPFTaskCopyCategoryList")
                                            .close()
                                            .element(taskCompleted, "x")
                                            .element("stranger", "text")
                                            .element("OPFTaskGetPriority", "3"));

    EXPECT_THAT(outcome.progress, ElementsAre(9, 18, 18, 18, 18, 27, 27, 100));
}
