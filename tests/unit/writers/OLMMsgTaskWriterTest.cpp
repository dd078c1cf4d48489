#include "filter/writers/OLMMsgTaskWriter.h"

#include "tests/fakehost/Matchers.h"
#include "tests/unit/storage/Thrown.h"
#include "tests/unit/storage/Wide.h"
#include "tests/unit/writers/MailMessages.h"
#include "tests/unit/writers/RecurringItems.h"
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

constexpr const char* recurrenceElement = "OPFTaskCopyRecurrence";

constexpr uint64_t oneAsDouble = 0x3FF0000000000000;
constexpr uint64_t timeOfDue = 131739479990000000; // 2018-06-20T06:00:00

// Every element that a task has, in the order of a real archive.
ItemDocument fullTask() {
    ItemDocument item = task();
    item.open("OPFTaskCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .element("OPFTaskCopyCompletedDateTime", "2018-06-21T00:39:08")
        .element("OPFTaskCopyDueDateTime", "2018-06-20T06:00:00")
        .element("OPFTaskCopyModDate", "1970-01-01T00:00:00Z")
        .element("OPFTaskCopyName", "Tar the boat")
        .element("OPFTaskCopyNote", "<b>twice</b>")
        .element("OPFTaskCopyNotePlain", "twice\n \n");
    addDaily(item, recurrenceElement);
    item.element("OPFTaskCopyStartDateTime", "1970-01-01T00:00:01Z")
        .element("OPFTaskGetPriority", "3");
    return item;
}

class OpenTaskWriter : public OpenRecurringWriter<OLMMsgTaskWriter> {
public:
    using OpenRecurringWriter::OpenRecurringWriter;

    using OLMMsgTaskWriter::handleNamedTaskDate;
    using OLMMsgTaskWriter::handleTaskCompletion;
};

class OLMMsgTaskWriterObjectTest : public RecurringWriterTest<OpenTaskWriter> {};

} // namespace

// --- The object.

TEST_F(OLMMsgTaskWriterObjectTest, ConstructionTouchesNoStorage) {
    host.forgetCalls();
    const OpenTaskWriter other(&request);

    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_FALSE(other.hasRecurrence);
    EXPECT_EQ(other.startText.length(), 0);
    EXPECT_EQ(other.endText.length(), 0);
    EXPECT_EQ(other.rootStorage, nullptr);
}

TEST_F(OLMMsgTaskWriterObjectTest, BeginningTakesTheRootTagAndCountsTheTable) {
    openDocument(task());
    writer->hasRecurrence = true;

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_EQ(writer->rootTag, 0u);
    EXPECT_EQ(writer->expectedProps, 11u);
    EXPECT_FALSE(writer->hasRecurrence);
    EXPECT_EQ(writer->properties.size(), static_cast<int>(requiredCount));
}

TEST_F(OLMMsgTaskWriterObjectTest, TableIsAddedInByteOrder) {
    begin(task());

    const std::vector<std::pair<std::string, uint64_t>> rows = {
        {"OPFTaskCopyCategoryList", 1},
        {"OPFTaskCopyCompletedDateTime", 0x810F0040},
        {"OPFTaskCopyDueDateTime", 0x81050040},
        {"OPFTaskCopyModDate", 0x30080040},
        {"OPFTaskCopyName", 0x0037001F},
        {"OPFTaskCopyNote", 0x10130102},
        {"OPFTaskCopyNotePlain", 0x1000001F},
        {"OPFTaskCopyRecurrence", 2},
        {"OPFTaskCopyStartDateTime", 0x81040040},
        {"OPFTaskGetPriority", 0x00170003},
        {"task", 0},
    };
    EXPECT_EQ(host.tagMaps().back(), rows);
}

TEST_F(OLMMsgTaskWriterObjectTest, RefusedTableThrowsAheadOfAnyStorage) {
    openDocument(task());
    for (const int32_t status : {-3, 3}) {
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), 0xFFFFFFFEu);
        EXPECT_FALSE(message().hasRoot());
    }
}

TEST_F(OLMMsgTaskWriterObjectTest, MissingRootStorageDoesNotEndTheBeginning) {
    openDocument(task());
    host.failCall(CallKind::CreateRoot, 0);

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);
    EXPECT_EQ(writer->expectedProps, 11u);
}

TEST_F(OLMMsgTaskWriterObjectTest, OtherTagsAreLeftToTheGenericHandling) {
    begin(task());
    for (const uint32_t id : {0U, 3U, 0x0037001FU, 0x1000001FU, 0x10130102U, 0x30080040U,
                              0x00170003U, 0x81160102U, UTXML_UNKNOWN_TAG + 0U}) {
        SCOPED_TRACE(id);
        OLMXMLTag tag;
        tag.tagRecord.id = id;

        EXPECT_FALSE(writer->handlePropSpecial(tag, *parser));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgTaskWriterObjectTest, CompletionMapsItsThreePropertiesInOrder) {
    begin(task());

    writer->handleTaskCompletion();

    EXPECT_THAT(added(), ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                                     entry(0x80020005, oneAsDouble)));
}

TEST_F(OLMMsgTaskWriterObjectTest, DateThatNoTableHoldsThrows) {
    begin(task());

    EXPECT_EQ(thrownCode([&] { writer->handleNamedTaskDate(0x81060040, wide(u"2018-06-20")); }),
              unknownCode);
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgTaskWriterObjectTest, EntryThatCannotBeAddedEndsTheItem) {
    begin(task().element("OPFTaskCopyDueDateTime", "2018-06-20"));
    writer->refusal = qor::errorIndex;

    EXPECT_EQ(thrownCode([&] { run(); }), qor::errorIndex);
}

TEST_F(OLMMsgTaskWriterObjectTest, LaterOfDueAndCompletedDateIsTheEnd) {
    begin(task()
              .element("OPFTaskCopyCompletedDateTime", "2018-06-21")
              .element("OPFTaskCopyDueDateTime", "2018-06-20")
              .element("OPFTaskCopyStartDateTime", "2018-06-18"));
    run();

    EXPECT_EQ(writer->endText, wide(u"2018-06-20"));
    EXPECT_EQ(writer->startText, wide(u"2018-06-18"));
}

TEST_F(OLMMsgTaskWriterObjectTest, CompletedDateBehindTheDueDateIsTheEnd) {
    begin(task()
              .element("OPFTaskCopyDueDateTime", "2018-06-20")
              .element("OPFTaskCopyCompletedDateTime", "2018-06-21"));
    run();

    EXPECT_EQ(writer->endText, wide(u"2018-06-21"));
    EXPECT_EQ(writer->startText.length(), 0);
}

TEST_F(OLMMsgTaskWriterObjectTest, WrittenTaskLeavesNothingOpenBehindTheWriter) {
    begin(fullTask());
    run();
    EXPECT_EQ(writer->finalizeNode(*parser), 0u);
    writer.reset();

    // The root, the storage of named properties and its three streams are given back too.
    EXPECT_EQ(host.openHandles(), openBefore - 5);
    EXPECT_TRUE(message().isRootClosed());
}

// --- Whole messages.

TEST(OLMMsgTaskWriterTest, EmptyTaskHasTheRequiredPropertiesAndNothingElse) {
    const Outcome outcome = extractItem(task());

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_THAT(outcome.message.paths(),
                ElementsAre("__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
                            "__nameid_version1.0/__substg1.0_00030102",
                            "__nameid_version1.0/__substg1.0_00040102", "__substg1.0_10090102",
                            "__substg1.0_001A001F", propertyStream));
    EXPECT_EQ(outcome.message.stream(propertyStream),
              headerBytes(0, 0) + requiredEntriesOf(u"IPM.Task"));
    EXPECT_EQ(outcome.message.classId(), hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(outcome.message.stream("__substg1.0_10090102"), Bytes());
    EXPECT_EQ(outcome.message.stream("__substg1.0_001A001F"), utf16(u"IPM.Task"));
    for (const char* tag : {"00020102", "00030102", "00040102"}) {
        EXPECT_EQ(nameStream(outcome.message, tag), Bytes());
    }
}

TEST(OLMMsgTaskWriterTest, FullTaskHasItsEntriesInDocumentOrderAndTheRecurrenceLast) {
    const StoredMessage message = writeItem(fullTask());

    EXPECT_EQ(message.stream(propertyStream),
              headerBytes(0, 0) + requiredEntriesOf(u"IPM.Task") +
                  hex("1F 10 00 80  06 00 00 00  04 00 00 00 00 00 00 00"
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
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), utf16(u"Sea") + hex("00 00"));
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

TEST(OLMMsgTaskWriterTest, CompletedDateGivesThreeMarksAndThenTheDate) {
    const StoredMessage message =
        writeItem(task().element("OPFTaskCopyCompletedDateTime", "2018-06-21T00:39:08"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, timeIn2018)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("1C 81 00 00  06 00  00 00"
                                                   "01 81 00 00  06 00  01 00"
                                                   "02 81 00 00  06 00  02 00"
                                                   "0F 81 00 00  06 00  03 00"));
}

TEST(OLMMsgTaskWriterTest, TwoCompletedDatesGiveEightEntries) {
    const StoredMessage message =
        writeItem(task()
                      .element("OPFTaskCopyCompletedDateTime", "2018-06-21T00:39:08")
                      .element("OPFTaskCopyCompletedDateTime", "2018-06-20T06:00:00"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, timeIn2018),
                            entry(0x8004000B, 1), entry(0x80050003, 2),
                            entry(0x80060005, oneAsDouble), entry(0x80070040, timeOfDue)));
}

TEST(OLMMsgTaskWriterTest, TaskWithoutACompletedDateHasNoStatus) {
    const StoredMessage message =
        writeItem(task()
                      .element("OPFTaskCopyStartDateTime", "2018-06-21T00:39:08")
                      .element("OPFTaskCopyDueDateTime", "2018-06-20T06:00:00"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, timeIn2018), entry(0x80010040, timeOfDue)));
    EXPECT_EQ(nameStream(message, "00030102"), hex("04 81 00 00  06 00  00 00"
                                                   "05 81 00 00  06 00  01 00"));
}

TEST(OLMMsgTaskWriterTest, DatesWithoutTextAreTimeZero) {
    const StoredMessage message = writeItem(task()
                                                .element("OPFTaskCopyStartDateTime")
                                                .element("OPFTaskCopyDueDateTime")
                                                .element("OPFTaskCopyModDate"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, 0), entry(0x80010040, 0), entry(0x30080040, 0)));
}

TEST(OLMMsgTaskWriterTest, CompletedDateWithoutTextCompletesTheTaskAllTheSame) {
    const StoredMessage message = writeItem(task().element("OPFTaskCopyCompletedDateTime"));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x8000000B, 1), entry(0x80010003, 2),
                            entry(0x80020005, oneAsDouble), entry(0x80030040, 0)));
}

TEST(OLMMsgTaskWriterTest, DateWithoutTextRepeatsTheTextBefore) {
    const StoredMessage message =
        writeItem(task()
                      .element("OPFTaskCopyStartDateTime", "2018-06-21T00:39:08")
                      .element("OPFTaskCopyStartDateTime")
                      .element("OPFTaskCopyCompletedDateTime", "2018-06-20T06:00:00")
                      .element("OPFTaskCopyDueDateTime"));

    EXPECT_THAT(entriesBehindRequired(message),
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

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x00170003, 5), entry(0x00170003, 1),
                            entry(0x00170003, 0xFFFFFFFF), entry(0x00170003, 0)));
}

TEST(OLMMsgTaskWriterTest, HtmlNoteIsDroppedAndNotCounted) {
    const Outcome outcome = extractItem(task().element("OPFTaskCopyNote", "<b>rich</b>"));

    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
    EXPECT_FALSE(outcome.message.has("__substg1.0_10130102"));
    EXPECT_THAT(entriesBehindRequired(outcome.message), IsEmpty());
}

TEST(OLMMsgTaskWriterTest, CategoriesAreANamedProperty) {
    const StoredMessage message = writeItem(task()
                                                .open("OPFTaskCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", "Sea")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", "Boat"));

    EXPECT_THAT(entriesBehindRequired(message), ElementsAre(entry(0x8000101F, 8)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), hex("08 00 00 00  0A 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000001"), utf16(u"Boat") + hex("00 00"));
}

// --- The recurrence.

TEST(OLMMsgTaskWriterTest, TaskWithoutARecurrenceHasNone) {
    const Outcome outcome =
        extractItem(task().element("OPFTaskCopyStartDateTime", "2018-06-18T09:00:00"));

    EXPECT_THAT(entriesBehindRequired(outcome.message), SizeIs(1));
    EXPECT_THAT(outcome.message.names(), SizeIs(4));
}

TEST(OLMMsgTaskWriterTest, EveryFormOfRecurrenceHasItsSize) {
    using Adder = ItemDocument& (*)(ItemDocument&, const char*);
    struct Form {
        Adder add;
        Bytes value;
    };
    // The item begins and ends 90 and 150 minutes behind the start of 2018-06-18.
    const Form forms[] = {{addDaily, dailyValue(90, 150)}, {addMonthly, monthlyValue(90, 150)}};
    for (const Form& form : forms) {
        ItemDocument item = task()
                                .element("OPFTaskCopyDueDateTime", "2018-06-18T02:30:00")
                                .element("OPFTaskCopyStartDateTime", "2018-06-18T01:30:00");
        form.add(item, recurrenceElement);

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80020102"), form.value);
        EXPECT_EQ(entriesBehindRequired(message).back(), entry(0x80020102, form.value.size()));
    }
}

TEST(OLMMsgTaskWriterTest, StartThatIsNoMidnightCountsAsDaylightSaving) {
    ItemDocument item = task()
                            .element("OPFTaskCopyStartDateTime", "2011-05-02T14:00:00")
                            .element("OPFTaskCopyDueDateTime", "2011-05-02T15:30:00");
    addWeekly(item, recurrenceElement);

    const StoredMessage message = writeItem(item);

    EXPECT_EQ(message.stream("__substg1.0_80020102"), weeklyValueWithoutZone(540, 630));
}

TEST(OLMMsgTaskWriterTest, RecurrenceGivesTheSameBytesWhereverItStands) {
    const char* const dates[] = {"OPFTaskCopyStartDateTime", "OPFTaskCopyDueDateTime"};
    const char* const texts[] = {"2018-06-18T01:30:00", "2018-06-18T02:30:00"};
    std::optional<Bytes> properties;
    for (int place = 0; place < 3; ++place) {
        SCOPED_TRACE(place);
        ItemDocument item = task();
        for (int index = 0; index < 2; ++index) {
            if (index == place) {
                addDaily(item, recurrenceElement);
            }
            item.element(dates[index], texts[index]);
        }
        if (place == 2) {
            addDaily(item, recurrenceElement);
        }

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80020102"), dailyValue(90, 150));
        if (!properties.has_value()) {
            properties = message.stream(propertyStream);
        }
        EXPECT_EQ(message.stream(propertyStream), properties);
    }
}

TEST(OLMMsgTaskWriterTest, RecurrenceTakesTheLaterOfDueAndCompletedDateAsTheEnd) {
    ItemDocument dueLast = task()
                               .element("OPFTaskCopyStartDateTime", "2018-06-18T01:30:00")
                               .element("OPFTaskCopyCompletedDateTime", "2018-06-18T04:00:00")
                               .element("OPFTaskCopyDueDateTime", "2018-06-18T02:30:00");
    addDaily(dueLast, recurrenceElement);
    EXPECT_EQ(writeItem(dueLast).stream("__substg1.0_80060102"), dailyValue(90, 150));

    ItemDocument completedLast =
        task()
            .element("OPFTaskCopyStartDateTime", "2018-06-18T01:30:00")
            .element("OPFTaskCopyDueDateTime", "2018-06-18T02:30:00")
            .element("OPFTaskCopyCompletedDateTime", "2018-06-18T04:00:00");
    addDaily(completedLast, recurrenceElement);
    EXPECT_EQ(writeItem(completedLast).stream("__substg1.0_80060102"), dailyValue(90, 240));
}

// The empty texts stand for 1601-01-01T00:00:01: 152474 days ahead of the start, less a second.
TEST(OLMMsgTaskWriterTest, RecurrenceWithoutItemDatesTakesEmptyTexts) {
    ItemDocument item = task();
    addDaily(item, recurrenceElement);

    const StoredMessage message = writeItem(item);

    const uint32_t offset = 0U - (152474U * 1440 - 1);
    EXPECT_THAT(entriesBehindRequired(message), ElementsAre(entry(0x80000102, 76)));
    EXPECT_EQ(message.stream("__substg1.0_80000102"), dailyValue(offset, offset));
}

TEST(OLMMsgTaskWriterTest, LastOfTwoRecurrencesCounts) {
    ItemDocument item = task()
                            .element("OPFTaskCopyStartDateTime", "2018-06-18T01:30:00")
                            .element("OPFTaskCopyDueDateTime", "2018-06-18T02:30:00");
    addDaily(item, recurrenceElement);
    addMonthly(item, recurrenceElement);

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(testing::_, testing::_, entry(0x80020102, 84)));
    EXPECT_EQ(message.stream("__substg1.0_80020102"), monthlyValue(90, 150));
}

TEST(OLMMsgTaskWriterTest, RecurrenceIsPassedOverOnTheFirstWay) {
    ItemDocument item = task();
    addDaily(item, recurrenceElement);
    item.element("OPFTaskCopyName", "Tar the boat");

    EXPECT_THAT(extractItem(item).progress, ElementsAre(9, 18, 18, 100));
}

TEST(OLMMsgTaskWriterTest, RecurrenceWithoutAStartFailsTheRequest) {
    const Outcome outcome = extractItem(task().element(recurrenceElement));

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_FALSE(outcome.message.has("__substg1.0_80000102"));
    EXPECT_EQ(outcome.openHandles, 0);
    EXPECT_EQ(outcome.openReaders, 0);
}

TEST_F(OLMMsgTaskWriterObjectTest, RecurrenceThatCannotBeTurnedThrowsOutOfTheEnd) {
    begin(task().element(recurrenceElement));
    run();

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), unknownCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_THAT(host.callTexts(CallKind::CreateStream), IsEmpty());
}

TEST_F(OLMMsgTaskWriterObjectTest, RefusedRecurrenceTableThrowsOutOfTheEnd) {
    ItemDocument item = task();
    begin(addDaily(item, recurrenceElement));
    run();
    host.failCall(CallKind::AddTagMap, 0, 3);

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), 0xFFFFFC18u);
    EXPECT_FALSE(message().has(propertyStream));
}

TEST_F(OLMMsgTaskWriterObjectTest, RecurrenceStreamThatCannotBeMadeIsLeftOutAlone) {
    ItemDocument item = task();
    begin(addDaily(item, recurrenceElement));
    run();
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_FALSE(message().has("__substg1.0_80000102"));
    EXPECT_EQ(message().stream(propertyStream), headerBytes(0, 0) + requiredEntriesOf(u"IPM.Task"));
    EXPECT_EQ(nameStream(message(), "00030102"), hex("16 81 00 00  06 00  00 00"))
        << "it has its number all the same";
}

TEST_F(OLMMsgTaskWriterObjectTest, ShortWriteOfTheRecurrenceThrowsOutOfTheEnd) {
    ItemDocument item = task();
    begin(addDaily(item, recurrenceElement));
    run();
    host.shortenWrite(3, 1, 0);

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), shortWriteCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(host.openHandles(), openBefore);
    EXPECT_EQ(message().stream("__substg1.0_80000102").size(), 7u);
}

// --- The item's end.

TEST(OLMMsgTaskWriterTest, ProgressCountsTheElementsOfTheTable) {
    const Outcome outcome = extractItem(task()
                                            .open("OPFTaskCopyCategoryList")
                                            .close()
                                            .element("OPFTaskCopyCompletedDateTime", "x")
                                            .element("stranger", "text")
                                            .element("OPFTaskGetPriority", "3"));

    EXPECT_THAT(outcome.progress, ElementsAre(9, 18, 18, 18, 18, 27, 27, 100));
}

TEST(OLMMsgTaskWriterTest, TaskEndsWithItsEleventhElementWhateverFollows) {
    ItemDocument repeated = task();
    for (int count = 0; count < 11; ++count) {
        repeated.element("OPFTaskGetPriority", "3");
    }
    repeated.element("OPFTaskCopyName", "unread");

    const Outcome outcome = extractItem(repeated);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress.back(), 100);
    EXPECT_THAT(outcome.progress, SizeIs(21));
    EXPECT_THAT(entriesBehindRequired(outcome.message),
                AllOf(SizeIs(11), Each(entry(0x00170003, 3))));
    EXPECT_FALSE(outcome.message.has("__substg1.0_0037001F"));
}

TEST(OLMMsgTaskWriterTest, SecondTaskOfADocumentIsNotTouched) {
    ItemDocument item = task().element("OPFTaskCopyName", "first").close().open("task");
    addDaily(item, recurrenceElement);

    const StoredMessage message = writeItem(item.element("OPFTaskCopyName", "second"));

    EXPECT_THAT(message, HasText(0x0037001F, u"first"));
    EXPECT_THAT(entriesBehindRequired(message), SizeIs(1));
}

TEST(OLMMsgTaskWriterTest, CancelledTaskHasNeitherRecurrenceNorPropertyStream) {
    ItemDocument item = task();
    addDaily(item, recurrenceElement);
    ItemRun run;
    run.answer = [](int32_t value) { return value == 18 ? 1 : 0; };

    const Outcome outcome = extractItem(item.element("OPFTaskCopyName", "Tar"), run);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(9, 18));
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_FALSE(outcome.message.has("__substg1.0_80000102"));
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.handlesLeftOpen, 0);
}

// --- Text of every length around the size of a chunk.

namespace {

class OLMMsgTaskWriterLengthTest : public testing::TestWithParam<size_t> {};

} // namespace

TEST_P(OLMMsgTaskWriterLengthTest, NameNoteAndCategoryAreWhole) {
    const std::u16string text = patternText(GetParam());
    const uint64_t size = 2 * GetParam() + 2;

    const StoredMessage message = writeItem(task()
                                                .open("OPFTaskCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", text)
                                                .close()
                                                .element("OPFTaskCopyName", text)
                                                .element("OPFTaskCopyNotePlain", text));

    EXPECT_THAT(
        entriesBehindRequired(message),
        ElementsAre(entry(0x8000101F, 4), entry(0x0037001F, size), entry(0x1000001F, size)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), le32(static_cast<uint32_t>(size)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), utf16(text) + hex("00 00"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(text));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(text));
}

TEST_P(OLMMsgTaskWriterLengthTest, TextThatIsNoDateOrNumberIsZero) {
    const std::u16string text(GetParam(), u'x');

    const StoredMessage message = writeItem(task()
                                                .element("OPFTaskCopyStartDateTime", text)
                                                .element("OPFTaskCopyDueDateTime", text)
                                                .element("OPFTaskCopyModDate", text)
                                                .element("OPFTaskGetPriority", text));

    EXPECT_THAT(entriesBehindRequired(message),
                ElementsAre(entry(0x80000040, 0), entry(0x80010040, 0), entry(0x30080040, 0),
                            entry(0x00170003, 0)));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgTaskWriterLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000));

// --- What the host and the document may do.

TEST(OLMMsgTaskWriterTest, NoHostFailureEscapesOrLeaks) {
    expectNoHostFailureEscapes(fullTask(), {}, 1);
}

TEST(OLMMsgTaskWriterTest, NoShortWriteEscapesOrLeaks) {
    expectNoShortWriteEscapes(fullTask());
}

TEST(OLMMsgTaskWriterTest, TaskWithoutARecurrenceIsFinishedWhereverTheDocumentBreaks) {
    const ItemDocument item = task()
                                  .open("OPFTaskCopyCategoryList")
                                  .element("category")
                                  .attribute("OPFCategoryCopyName", "Sea")
                                  .close()
                                  .element("OPFTaskCopyCompletedDateTime", "2018-06-21")
                                  .element("OPFTaskCopyName", "Tar the boat");
    expectItemIsFinishedWhereverTheDocumentBreaks(item, {}, [](const StoredMessage& message) {
        const Bytes begin = headerBytes(0, 0) + requiredEntriesOf(u"IPM.Task");
        EXPECT_EQ(message.stream(propertyStream).part(0, begin.size()), begin);
    });
}

TEST(OLMMsgTaskWriterTest, TaskFailsOnlyWhereItsRecurrenceIsCut) {
    expectOnlyACutRecurrenceFails(fullTask(), recurrenceElement);
}
