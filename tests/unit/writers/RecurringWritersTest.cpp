// Tests of what the writers of appointments and of tasks have in common.

#include <algorithm>
#include <map>
#include <numeric>
#include <tuple>

#include "filter/writers/OLMMsgRecurringWriter.h"
#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/RecurringItems.h"

using namespace fakehost;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using RecurrenceAdder = ItemDocument& (*)(ItemDocument&, const char*);

struct RecurringFacts {
    const ItemKind* kind;
    const char* recurrence; // this and the next three: names of elements
    const char* start;
    const char* end;
    const char* subject;
    size_t entriesOfADate;
    const char* name; // of the recurrence if it is the first named property, in hex digits

    // Elements in an order that does not matter, also in relation to the recurrence.
    std::vector<std::pair<const char*, const char*>> inAnyOrder;
    RecurrenceAdder add;
    Bytes value; // of the recurrence that `add` adds
    uint32_t valueTag;

    ItemDocument withDaily; // an item with the recurrence of addDaily() and more

    friend void PrintTo(const RecurringFacts& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

RecurringFacts recurringAppointment() {
    ItemDocument withDaily = appointment().element(calStart, "2018-06-18T01:30:00");
    return {
        .kind = &appointmentKind,
        .recurrence = calRecurrence,
        .start = calStart,
        .end = calEnd,
        .subject = "OPFCalendarEventCopySummary",
        .entriesOfADate = 2,
        .name = "16 82 00 00  06 00  00 00",
        .inAnyOrder = {{calStart, "2011-05-02T14:00:00"},
                       {calEnd, "2011-05-02T15:30:00"},
                       {calZone, "(UTC-05:00)"}},
        .add = addWeekly,
        .value = weeklyValue(),
        .valueTag = 0x80030102,
        .withDaily = addDaily(withDaily, calRecurrence).element(calZone, "+01:00"),
    };
}

RecurringFacts recurringTask() {
    return {
        .kind = &taskKind,
        .recurrence = taskRecurrence,
        .start = taskStart,
        .end = taskDue,
        .subject = "OPFTaskCopyName",
        .entriesOfADate = 1,
        .name = "16 81 00 00  06 00  00 00",
        .inAnyOrder = {{taskStart, "2018-06-18T01:30:00"}, {taskDue, "2018-06-18T02:30:00"}},
        .add = addDaily,
        .value = dailyValue(90, 150),
        .valueTag = 0x80020102,
        .withDaily = fullTask(),
    };
}

// The members of both writers, opened for tests.
class RecurringInside : public OLMMsgRecurringWriter {
public:
    using OLMMsgRecurringWriter::endText;
    using OLMMsgRecurringWriter::hasRecurrence;
    using OLMMsgRecurringWriter::startText;
};

class RecurringFrame : public AnyWriterTest {
protected:
    explicit RecurringFrame(const RecurringFacts& given) : facts(given) { kind = facts.kind; }

    template <class Member> Member& inside(Member OLMMsgRecurringWriter::*member) {
        return dynamic_cast<OLMMsgRecurringWriter&>(*writer).*member;
    }

    // Returns an item of the kind from one time to another.
    [[nodiscard]] ItemDocument itemOf(const char* startText, const char* endText) const {
        return kind->item().element(facts.start, startText).element(facts.end, endText);
    }

    // Reads an item with nothing but a recurrence to its end.
    void runDaily() {
        ItemDocument item = kind->item();
        begin(addDaily(item, facts.recurrence));
        run();
    }

    const RecurringFacts facts;
};

class RecurringWritersTest : public RecurringFrame,
                             public testing::WithParamInterface<RecurringFacts> {
protected:
    RecurringWritersTest() : RecurringFrame(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Items, RecurringWritersTest,
                         testing::Values(recurringAppointment(), recurringTask()), kindName);

} // namespace

TEST_P(RecurringWritersTest, NewWriterHasNoRecurrence) {
    makeWriter();

    EXPECT_FALSE(inside(&RecurringInside::hasRecurrence));
    EXPECT_EQ(inside(&RecurringInside::startText).length(), 0);
    EXPECT_EQ(inside(&RecurringInside::endText).length(), 0);
}

TEST_P(RecurringWritersTest, EveryFormOfRecurrenceHasItsSize) {
    struct Form {
        RecurrenceAdder add;
        ItemDocument item; // begins and ends 90 and 150 minutes after the recurrence's start
        Bytes value;
        uint64_t size;
    };
    const Form forms[] = {
        {addDaily, itemOf("2018-06-18T01:30:00", "2018-06-18T02:30:00"), dailyValue(90, 150), 76},
        {addWeekly, itemOf("2011-05-02T06:30:00", "2011-05-02T07:30:00"),
         weeklyValueWithoutZone(90, 150), 80},
        {addMonthly, itemOf("2018-06-18T01:30:00", "2018-06-18T02:30:00"), monthlyValue(90, 150),
         84}};
    for (const Form& form : forms) {
        SCOPED_TRACE(form.size);
        ItemDocument item = form.item;
        form.add(item, facts.recurrence);

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80020102"), form.value);
        EXPECT_EQ(ownEntries(message).back(), entry(0x80020102, form.size));
    }
}

TEST_P(RecurringWritersTest, StartThatIsNotMidnightCountsAsDaylightSaving) {
    ItemDocument item = itemOf("2011-05-02T14:00:00", "2011-05-02T15:30:00");
    addWeekly(item, facts.recurrence);

    EXPECT_EQ(writeItem(item).stream("__substg1.0_80020102"), weeklyValueWithoutZone(540, 630));
}

TEST_P(RecurringWritersTest, LastOfTwoRecurrencesIsUsed) {
    struct Pair {
        RecurrenceAdder first;
        RecurrenceAdder second;
        Bytes value; // of the second
    };
    for (const Pair& pair : {Pair{addWeekly, addDaily, dailyValue(90, 150)},
                             Pair{addDaily, addMonthly, monthlyValue(90, 150)}}) {
        ItemDocument item = itemOf("2018-06-18T01:30:00", "2018-06-18T02:30:00");
        pair.first(item, facts.recurrence);
        pair.second(item, facts.recurrence);

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream("__substg1.0_80020102"), pair.value);
        EXPECT_FALSE(message.has("__substg1.0_80030102"));
        EXPECT_THAT(ownEntries(message), SizeIs(2 * facts.entriesOfADate + 1));
        EXPECT_EQ(ownEntries(message).back(), entry(0x80020102, pair.value.size()));
    }
}

TEST_P(RecurringWritersTest, RecurrenceHasTheSameBytesWhereverItIs) {
    // Indexes in `inAnyOrder`; the one after the last means the recurrence.
    const size_t recurrenceNumber = facts.inAnyOrder.size();
    std::vector<size_t> order(recurrenceNumber + 1);
    std::iota(order.begin(), order.end(), size_t{0});
    std::map<std::vector<size_t>, Bytes> propertiesByOrderOfTheOthers;
    do {
        SCOPED_TRACE(testing::PrintToString(order));
        ItemDocument item = kind->item();
        std::vector<size_t> others;
        for (const size_t number : order) {
            if (number == recurrenceNumber) {
                facts.add(item, facts.recurrence);
                continue;
            }
            item.element(facts.inAnyOrder[number].first, facts.inAnyOrder[number].second);
            others.push_back(number);
        }

        const StoredMessage message = writeItem(item);

        EXPECT_EQ(message.stream(valueStream(facts.valueTag)), facts.value);
        EXPECT_EQ(ownEntries(message).back(), entry(facts.valueTag, facts.value.size()));
        const Bytes properties = message.stream(propertyStream);
        const auto [known, isNew] = propertiesByOrderOfTheOthers.emplace(others, properties);
        EXPECT_EQ(known->second, properties);
    } while (std::ranges::next_permutation(order).found);
}

TEST_P(RecurringWritersTest, RecurrenceOfTheSecondItemOfADocumentIsNotTouched) {
    ItemDocument item = kind->item().element(facts.subject, "first").close().open(kind->element);
    facts.add(item, facts.recurrence);

    const StoredMessage message = writeItem(item.element(facts.subject, "second"));

    EXPECT_THAT(message, HasText(0x0037001F, u"first"));
    EXPECT_THAT(ownEntries(message), SizeIs(1));
}

// --- Invalid recurrences, and failures of the host.

TEST_P(RecurringWritersTest, InvalidRecurrenceFailsTheRequest) {
    const auto begun = [this] {
        return kind->item()
            .open(facts.recurrence)
            .element("OPFRecurrenceCopyStartDate", "2018-06-18");
    };
    const ItemDocument items[] = {
        kind->item().element(facts.recurrence),
        begun()
            .open("OPFRecurrencePattern")
            .element("OPFRecurrencePatternInterval", "1")
            .element("OPFRecurrencePatternType", "OPFRecurrencePatternWeekly"), // without days
        begun(),
    };
    for (const ItemDocument& item : items) {
        const Outcome outcome = extractItem(item);

        expectFailedRequest(outcome);
        EXPECT_EQ(outcome.progress.back(), 100) << "the item was read to its end";
        EXPECT_FALSE(outcome.message.has("__substg1.0_80000102"));
    }
}

TEST_P(RecurringWritersTest, InvalidRecurrenceThrowsAtTheEnd) {
    begin(kind->item().element(facts.recurrence));
    run();

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), unknownCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_THAT(host.callTexts(CallKind::CreateStream), IsEmpty());
}

TEST_P(RecurringWritersTest, RejectedRecurrenceTableThrowsAtTheEnd) {
    runDaily();
    for (const int32_t status : {-3, 3}) {
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), 0xFFFFFC18u);
        EXPECT_FALSE(message().has(propertyStream));
    }
}

TEST_P(RecurringWritersTest, RecurrenceWithoutAStreamLosesOnlyItsProperty) {
    runDaily();
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_FALSE(message().has("__substg1.0_80000102"));
    EXPECT_EQ(message().stream(propertyStream), streamBegin(*kind));
    EXPECT_EQ(nameStream(message(), "00030102"), hex(facts.name))
        << "it has its number nevertheless";
}

TEST_P(RecurringWritersTest, ItemFailsOnlyIfItsRecurrenceIsBroken) {
    expectOnlyABrokenRecurrenceFails(facts.withDaily, facts.recurrence);
}

namespace {

// The offset at which each write of a daily recurrence begins.
constexpr size_t dailyWrites[] = {0,  2,  4,  6,  8,  10, 14, 18, 22, 26, 30,
                                  34, 38, 42, 46, 50, 54, 58, 62, 66, 68, 72};

class RecurringShortWriteTest
    : public RecurringFrame,
      public testing::WithParamInterface<std::tuple<RecurringFacts, int>> {
protected:
    RecurringShortWriteTest() : RecurringFrame(std::get<0>(GetParam())) {}
};

INSTANTIATE_TEST_SUITE_P(Items, RecurringShortWriteTest,
                         testing::Combine(testing::Values(recurringAppointment(), recurringTask()),
                                          testing::Range(0,
                                                         static_cast<int>(std::size(dailyWrites)))),
                         [](const auto& row) {
                             return std::get<0>(row.param).kind->name +
                                    std::to_string(std::get<1>(row.param));
                         });

} // namespace

TEST_P(RecurringShortWriteTest, OfTheRecurrenceThrowsAtTheEnd) {
    const int failing = std::get<1>(GetParam());
    runDaily();
    host.shortenWrite(failing, 1, 0);

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), shortWriteCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(host.openHandles(), openBefore);
    EXPECT_EQ(message().stream("__substg1.0_80000102").size(), dailyWrites[failing] + 1);
    EXPECT_FALSE(message().has(propertyStream));
}
