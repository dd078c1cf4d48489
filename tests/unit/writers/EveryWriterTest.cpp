// Tests of what the writers of all kinds of items have in common.

#include <tuple>

#include "tests/fakehost/Sweeps.h"
#include "tests/unit/writers/ContactMessages.h"
#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/MailMessages.h"
#include "tests/unit/writers/RecurringItems.h"
#include "tests/unit/writers/WriterFacts.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::vector<WriterFacts> factsOfAll() {
    return {mailFacts(), appointmentFacts(), taskFacts(),
            noteFacts(), contactFacts(),     groupFacts()};
}

class EveryWriterTest : public AnyWriterTest, public testing::WithParamInterface<WriterFacts> {
protected:
    EveryWriterTest() { kind = GetParam().kind; }

    // Returns an item of the kind with this one text.
    [[nodiscard]] ItemDocument itemOf(const char* text) const {
        return kind->item().element(GetParam().string.element, text);
    }
};

// Writers that end the item when their tag table is rejected.
class EveryCheckedTableTest : public EveryWriterTest {};

class EveryTagTableTest : public EveryWriterTest {};

INSTANTIATE_TEST_SUITE_P(Items, EveryWriterTest, testing::ValuesIn(factsOfAll()), kindName);
INSTANTIATE_TEST_SUITE_P(Items, EveryCheckedTableTest,
                         testing::Values(mailFacts(), taskFacts(), noteFacts(), contactFacts(),
                                         groupFacts()),
                         kindName);
INSTANTIATE_TEST_SUITE_P(Items, EveryTagTableTest,
                         testing::Values(mailFacts(), appointmentFacts(), taskFacts(), noteFacts(),
                                         groupFacts()),
                         kindName);

} // namespace

// --- The writer itself.

TEST_P(EveryWriterTest, ConstructionTouchesNoStorage) {
    archive = host.openArchive();
    host.forgetCalls();
    makeWriter();

    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(writer.get()->*(&WriterInside::rootStorage), nullptr);
    EXPECT_EQ(writer.get()->*(&WriterInside::recipientCount), 0);
}

TEST_P(EveryWriterTest, InitializationTakesTheRootTagAndCountsTheTable) {
    openDocument(kind->item());

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_EQ(writer.get()->*(&WriterInside::rootTag), 0u);
    EXPECT_EQ(writer.get()->*(&WriterInside::expectedProps), GetParam().rows);
    const Bytes leading = hex(kind->leadingEntries);
    EXPECT_EQ((writer.get()->*(&WriterInside::properties)).size(),
              static_cast<int>(requiredCount + leading.size() / 16));
    EXPECT_EQ(entryBytes(added()), leading);
}

TEST_P(EveryTagTableTest, IsAddedInByteOrder) {
    begin(kind->item());

    EXPECT_THAT(GetParam().table, SizeIs(GetParam().rows));
    EXPECT_EQ(host.tagMaps().back(), GetParam().table);
}

TEST_P(EveryCheckedTableTest, ThrowsBeforeAnyStorageWhenRejected) {
    openDocument(kind->item());
    for (const int32_t status : {-3, 3}) {
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), 0xFFFFFFFEu);
        EXPECT_FALSE(message().hasRoot());
    }
}

TEST_P(EveryWriterTest, MissingRootStorageDoesNotEndTheInitialization) {
    openDocument(kind->item());
    host.failCall(CallKind::CreateRoot, 0);

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);
    EXPECT_EQ(writer.get()->*(&WriterInside::expectedProps), GetParam().rows);
}

TEST_P(EveryWriterTest, OtherTagsAreLeftToTheGenericHandling) {
    begin(kind->fullItem());
    const auto before = added();
    std::vector<uint32_t> ids = GetParam().otherTags;
    ids.push_back(UTXML_UNKNOWN_TAG);
    for (const uint32_t id : ids) {
        SCOPED_TRACE(id);
        OLMXMLTag tag;
        tag.tagRecord.id = id;

        EXPECT_FALSE(writer->handlePropSpecial(tag, *parser));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(added(), before);
}

TEST_P(EveryWriterTest, WriterOfAWholeItemLeavesNothingOpen) {
    begin(kind->fullItem());
    run();
    EXPECT_EQ(writer->finalizeNode(*parser), 0u);
    writer.reset();

    // The root, the storage of named properties and its three streams are closed too.
    EXPECT_EQ(host.openHandles(), openBefore - 5);
    EXPECT_TRUE(message().isRootClosed());
}

// --- Whole messages.

TEST_P(EveryWriterTest, EmptyItemHasOnlyWhatEveryMessageOfItsKindHas) {
    const Outcome outcome = extractItem(kind->item());

    std::vector<std::string> paths = {"__nameid_version1.0",
                                      "__nameid_version1.0/__substg1.0_00020102",
                                      "__nameid_version1.0/__substg1.0_00030102",
                                      "__nameid_version1.0/__substg1.0_00040102",
                                      "__substg1.0_10090102",
                                      "__substg1.0_001A001F"};
    std::vector<ExpectedStream> streams = {
        {"__nameid_version1.0/__substg1.0_00020102", hex(GetParam().sets)},
        {"__nameid_version1.0/__substg1.0_00030102", hex(GetParam().names)},
        {"__nameid_version1.0/__substg1.0_00040102", Bytes()},
        {"__substg1.0_10090102", Bytes()},
        {"__substg1.0_001A001F", utf16(kind->messageClass)},
        {propertyStream, streamBegin(*kind) + hex(kind->trailingEntries)}};
    for (const uint32_t tag : GetParam().emptyStrings) {
        paths.push_back(valueStream(tag));
        streams.push_back({paths.back(), Bytes()});
    }
    paths.emplace_back(propertyStream);
    for (const NamesStream& bucket : GetParam().buckets) {
        paths.push_back(std::string("__nameid_version1.0/__substg1.0_") + bucket.tag);
        streams.push_back({paths.back(), hex(bucket.bytes)});
    }
    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_EQ(outcome.message.paths(), paths);
    EXPECT_EQ(outcome.message.classId(), hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    expectStreams(outcome.message, streams);
}

TEST_P(EveryWriterTest, ItemWithoutCategoriesHasAnEmptyStringStream) {
    const StoredMessage message = writeItem(itemOf("Tide table"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(GetParam().string.tag, 22)));
    EXPECT_EQ(nameStream(message, "00040102"), Bytes());
    EXPECT_FALSE(message.has("__nameid_version1.0/__substg1.0_10150102"));
}

TEST_P(EveryWriterTest, ElementsInsideUnknownOnesAreRead) {
    const StringElement& inner = GetParam().string;
    const Outcome outcome = extractItem(kind->item()
                                            .open(GetParam().unknown)
                                            .element(inner.element, "inside")
                                            .close()
                                            .element("stranger", "text"));

    EXPECT_THAT(ownEntries(outcome.message), ElementsAre(entry(inner.tag, 14)));
    const int percent = GetParam().percent;
    EXPECT_THAT(outcome.progress, ElementsAre(0, percent, percent, percent, percent, percent, 100));
}

TEST_P(EveryWriterTest, ItemEndsAfterAsManyElementsAsItsTableHas) {
    const RepeatedElement& repeated = GetParam().repeated;
    ItemDocument item = kind->item();
    for (uint32_t count = 0; count < GetParam().rows; ++count) {
        item.element(repeated.element, repeated.text);
    }
    item.element(GetParam().unread.element, "unread");

    const Outcome outcome = extractItem(item);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress.back(), 100);
    EXPECT_THAT(outcome.progress, SizeIs(2 * GetParam().rows - 1));
    EXPECT_EQ(outcome.message.stream(propertyStream),
              streamBegin(*kind) +
                  entryBytes(std::vector<PropertyEntry>(GetParam().rows, repeated.entry)) +
                  hex(kind->trailingEntries));
    for (const uint32_t tag : GetParam().emptyStrings) {
        EXPECT_EQ(outcome.message.stream(valueStream(tag)), Bytes());
    }
    EXPECT_FALSE(outcome.message.has(valueStream(GetParam().unread.tag)));
}

TEST_P(EveryWriterTest, SecondItemOfADocumentIsNotTouched) {
    const StringElement& string = GetParam().string;
    const StoredMessage message =
        writeItem(itemOf("first").close().open(kind->element).element(string.element, "second"));

    EXPECT_THAT(message, HasText(string.tag, u"first"));
    EXPECT_THAT(ownEntries(message), SizeIs(1));
}

namespace {

struct CancelCase {
    const ItemKind* kind;
    ItemDocument item;
    std::vector<int> progress; // up to the value at which it is cancelled
    uint32_t unwritten;        // a value that only the end of the item would write; 0 for none

    friend void PrintTo(const CancelCase& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

ItemDocument taskWithARecurrence() {
    ItemDocument item = task();
    return addDaily(item, "OPFTaskCopyRecurrence").element("OPFTaskCopyName", "Tar");
}

class EveryCancelTest : public testing::TestWithParam<CancelCase> {};

INSTANTIATE_TEST_SUITE_P(
    Items, EveryCancelTest,
    testing::Values(CancelCase{&mailKind, fullMail(), {4, 9, 13}, 0},
                    CancelCase{&appointmentKind,
                               fullAppointment(),
                               {5,  10, 10, 10, 15, 15, 21, 21, 26, 26, 31, 31, 36, 36, 42,
                                42, 47, 52, 52, 57, 57, 63, 63, 68, 68, 73, 73, 78, 78, 84},
                               0x800A0102},
                    CancelCase{&taskKind, taskWithARecurrence(), {9, 18}, 0x80000102},
                    CancelCase{&noteKind, fullNote(), {14, 28}, 0},
                    CancelCase{&contactKind,
                               contact()
                                   .element("OPFContactCopyBusinessCity", "Port")
                                   .element("OPFContactCopyHomeCity", "Fjord"),
                               {1, 1, 3},
                               0x8001001F},
                    CancelCase{&groupKind, fullGroup(), {14, 28, 28, 42}, 0}),
    kindName);

} // namespace

TEST_P(EveryCancelTest, LeavesTheItemWithoutAPropertyStream) {
    ItemRun run = GetParam().kind->fullRun();
    run.answer = [](int32_t value) { return value == GetParam().progress.back() ? 1 : 0; };

    const Outcome outcome = extractItem(GetParam().item, run);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress, GetParam().progress);
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_FALSE(outcome.message.has(valueStream(GetParam().unwritten)));
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.handlesLeftOpen, 0);
}

// --- Text that is not written.

namespace {

struct DroppedCase {
    const ItemKind* kind;
    const char* element;

    friend void PrintTo(const DroppedCase& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

class EveryDroppedTextTest : public testing::TestWithParam<DroppedCase> {};

INSTANTIATE_TEST_SUITE_P(Items, EveryDroppedTextTest,
                         testing::Values(DroppedCase{&appointmentKind,
                                                     "OPFCalendarEventCopyDescription"},
                                         DroppedCase{&taskKind, "OPFTaskCopyNote"},
                                         DroppedCase{&noteKind, "OPFNoteCopyText"},
                                         DroppedCase{&contactKind, "OPFContactCopyNotes"},
                                         DroppedCase{&groupKind, "OPFGroupCopyNotes"}),
                         kindName);

} // namespace

TEST_P(EveryDroppedTextTest, RichTextIsNotWrittenAndNotCounted) {
    const Outcome outcome =
        extractItem(GetParam().kind->item().element(GetParam().element, "<b>rich</b>"));

    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
    EXPECT_FALSE(outcome.message.has("__substg1.0_10130102"));
    EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
}

// --- Text of every length.

namespace {

using FactsAndLength = std::tuple<WriterFacts, size_t>;

class EveryLengthTest : public testing::TestWithParam<FactsAndLength> {
protected:
    const WriterFacts& facts = std::get<0>(GetParam());
    const ItemKind& kind = *facts.kind;
    const size_t length = std::get<1>(GetParam());
    const std::u16string text = patternText(length);
    const uint64_t size = 2 * length + 2; // of a string property with that text
};

INSTANTIATE_TEST_SUITE_P(Items, EveryLengthTest,
                         testing::Combine(testing::ValuesIn(factsOfAll()),
                                          testing::ValuesIn(textLengths)),
                         [](const auto& row) {
                             return std::get<0>(row.param).kind->name +
                                    std::to_string(std::get<1>(row.param));
                         });

} // namespace

TEST_P(EveryLengthTest, StringsAreWhole) {
    ItemDocument item = kind.item();
    for (const char* element : facts.strings.elements) {
        item.element(element, text);
    }
    std::vector<PropertyEntry> expected;
    for (const uint32_t tag : facts.strings.tags) {
        expected.push_back(entry(tag, size));
    }

    const StoredMessage message = writeItem(item);

    EXPECT_EQ(ownEntries(message), expected);
    for (const uint32_t tag : facts.strings.tags) {
        EXPECT_EQ(message.stream(valueStream(tag)), utf16(text)) << valueStream(tag);
    }
}

TEST_P(EveryLengthTest, CategoryIsWholeAndAddsNoPropertySet) {
    ItemDocument item = kind.item();
    const StoredMessage message = writeItem(addCategories(item, facts.categories, {text}));

    const uint32_t tag = facts.categoriesTag;
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(tag, 4)));
    EXPECT_EQ(message.stream(valueStream(tag)), le32(static_cast<uint32_t>(size)));
    EXPECT_EQ(message.stream(valueStream(tag, 0)), terminated(text));
    EXPECT_EQ(nameStream(message, "00020102"), hex(facts.sets));
}

TEST_P(EveryLengthTest, TextThatIsNoDateNumberOrTruthIsTheDefault) {
    ItemDocument item = kind.item();
    for (const char* element : facts.values.elements) {
        item.element(element, std::u16string(length, u'x'));
    }

    const StoredMessage message = writeItem(item);

    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(kind) + entryBytes(facts.values.entries) + hex(kind.trailingEntries));
}

// --- Failures of the host and of the document.

namespace {

// Named properties that are written before any element fail the request when there is no root for
// them. Any other item ends at its own tag: without a root the initialization does not read it, so
// the first step takes it for the end of the item.
bool failsWithoutRoot(const ItemKind& kind) {
    return &kind == &noteKind || &kind == &contactKind;
}

} // namespace

TEST_P(EveryWriterTest, NoHostFailureEscapesOrLeaks) {
    expectNoHostFailureEscapes(kind->fullItem(), kind->fullRun(), failsWithoutRoot(*kind) ? 0 : 1);
}

TEST_P(EveryWriterTest, NoShortWriteEscapesOrLeaks) {
    expectNoShortWriteEscapes(kind->fullItem(), kind->fullRun());
}

TEST_P(EveryWriterTest, MissingRootStorageEndsTheItem) {
    ItemRun run = kind->fullRun();
    run.prepare = [](FakeHost& own) { own.failCall(CallKind::CreateRoot, 0); };

    const Outcome outcome = extractItem(kind->fullItem(), run);

    EXPECT_FALSE(outcome.message.hasRoot());
    if (failsWithoutRoot(*kind)) {
        expectFailedRequest(outcome);
        return;
    }
    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_THAT(outcome.message.paths(), IsEmpty());
    expectReleased(outcome);
}

namespace {

// An item without a recurrence: a break of the document never fails its request.
struct BreakCase {
    const ItemKind* kind;
    ItemDocument item;
    MessageCheck check; // specific to the kind

    friend void PrintTo(const BreakCase& row, std::ostream* out) { PrintTo(*row.kind, out); }
};

constexpr const char* recipientPrefix = "__recip_version1.0_#";
constexpr const char* attachmentPrefix = "__attach_version1.0_#";

void expectNoRecipientOrAttachment(const StoredMessage& message) {
    EXPECT_EQ(countStorages(message, recipientPrefix), 0u);
    EXPECT_EQ(countStorages(message, attachmentPrefix), 0u);
}

void expectNoAttachment(const StoredMessage& message) {
    EXPECT_EQ(countStorages(message, attachmentPrefix), 0u);
}

void expectAttachmentFlag(const StoredMessage& message) {
    const bool hasAttachment = countStorages(message, attachmentPrefix) != 0;
    EXPECT_EQ(messageFlags(message) & 0x10, hasAttachment ? 0x10u : 0u);
}

void expectBothWholeAddresses(const StoredMessage& message) {
    expectNoRecipientOrAttachment(message);
    EXPECT_THAT(namedValues(message, wholeBusiness), SizeIs(1));
    EXPECT_THAT(namedValues(message, wholeHome), SizeIs(1));
}

ItemDocument appointmentWithoutARecurrence() {
    return appointment()
        .open("OPFCalendarEventCopyAttendeeList")
        .element("appointmentAttendee")
        .attribute("OPFCalendarAttendeeAddress", "a@x")
        .close()
        .element("OPFCalendarEventCopyLocation", "Pier")
        .element("OPFCalendarEventCopyOrganizer", "o@x")
        .element(calStart, "2011-05-02")
        .element(calZone, "-05:00");
}

ItemDocument taskWithoutARecurrence() {
    ItemDocument item = task();
    return addCategories(item, "OPFTaskCopyCategoryList", {"Sea"})
        .element("OPFTaskCopyCompletedDateTime", "2018-06-21")
        .element("OPFTaskCopyName", "Tar the boat");
}

class EveryBreakTest : public testing::TestWithParam<BreakCase> {};

INSTANTIATE_TEST_SUITE_P(
    Items, EveryBreakTest,
    testing::Values(BreakCase{&mailKind, fullMail(), expectAttachmentFlag},
                    BreakCase{&appointmentKind, appointmentWithoutARecurrence(),
                              expectNoAttachment},
                    BreakCase{&taskKind, taskWithoutARecurrence(), expectNoRecipientOrAttachment},
                    BreakCase{&noteKind, fullNote(), expectNoRecipientOrAttachment},
                    BreakCase{&contactKind, fullContact(), expectBothWholeAddresses},
                    BreakCase{&groupKind, fullGroup(), expectNoRecipientOrAttachment}),
    kindName);

} // namespace

TEST_P(EveryBreakTest, ItemIsFinishedWhereverTheDocumentBreaks) {
    const ItemKind& kind = *GetParam().kind;
    expectItemIsFinishedWhereverTheDocumentBreaks(
        GetParam().item, kind.fullRun(), [&](const StoredMessage& message) {
            const Bytes begin = streamBegin(kind, countStorages(message, recipientPrefix),
                                            countStorages(message, attachmentPrefix));
            EXPECT_EQ(message.stream(propertyStream).part(0, begin.size()), begin);
            GetParam().check(message);
        });
}
