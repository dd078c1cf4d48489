#include <cstring>
#include <memory>
#include <stdexcept>

#include <gmock/gmock.h>

#include "filter/state/PROC.h"
#include "tests/fakehost/Extraction.h"
#include "tests/fakehost/Matchers.h"
#include "tests/fakehost/Sweeps.h"

namespace {

using fakehost::Bytes;
using fakehost::CallKind;
using fakehost::document;
using fakehost::expectReleased;
using fakehost::extractAt;
using fakehost::extractIndex;
using fakehost::extractItem;
using fakehost::FakeHost;
using fakehost::HasText;
using fakehost::ItemDocument;
using fakehost::note;
using fakehost::Outcome;
using fakehost::patternText;
using fakehost::Scan;
using fakehost::StoredMessage;
using fakehost::writeItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char title[] = "OPFNoteCopyTitle";
constexpr char body[] = "OPFNoteCopyNonHTMLText";
constexpr char properties[] = "__properties_version1.0";
constexpr uint32_t subjectTag = 0x0037001F;

ItemDocument threeNotes() {
    return document("notes")
        .open("note")
        .element(title, "one")
        .close()
        .open("note")
        .element(title, "two")
        .close()
        .open("note")
        .element(title, "three")
        .close();
}

// Two documents between other entries: notes 0 to 2 in entry 1, note 3 in entry 3.
class ItemExtractionTest : public testing::Test {
protected:
    void SetUp() override {
        host.entry("Local/", Bytes{}).entry("Local/Notes/Notes.xml", threeNotes());
        host.entry("picture", Bytes{}).entry("b.xml", note().element(title, "four"));
        scan = std::make_unique<Scan>(host);
        scan->run();
        host.forgetCalls();
    }

    static void expectDone(const Outcome& outcome, std::u16string_view subject) {
        EXPECT_EQ(outcome.result, VwSpecialDone);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.message, HasText(subjectTag, subject));
        EXPECT_TRUE(outcome.message.isRootClosed());
        ASSERT_FALSE(outcome.progress.empty());
        EXPECT_EQ(outcome.progress.back(), 100);
        EXPECT_EQ(outcome.handlesLeftOpen, 0);
        expectReleased(outcome);
    }

    void expectRefused(const Outcome& outcome, int32_t result) {
        EXPECT_EQ(outcome.result, result);
        EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
        EXPECT_THAT(outcome.progress, IsEmpty());
        EXPECT_FALSE(outcome.message.hasRoot());
        EXPECT_EQ(outcome.handlesLeftOpen, 0);
        expectReleased(outcome);
    }

    FakeHost host;
    std::unique_ptr<Scan> scan;
};

// --- By index.

TEST_F(ItemExtractionTest, IndexNamesAnItemOfTheWholeArchive) {
    const std::u16string_view subjects[] = {u"one", u"two", u"three", u"four"};
    for (const int32_t index : {2, 0, 3, 1, 1}) {
        SCOPED_TRACE(index);
        expectDone(extractIndex(*scan, index), subjects[index]);
    }
}

TEST_F(ItemExtractionTest, IndexAtOrPastTheEndOpensNoEntry) {
    for (const int32_t index : {4, 5, 1'000'000, INT32_MAX}) {
        SCOPED_TRACE(index);
        expectRefused(extractIndex(*scan, index), VwSpecialFailed);
    }
    EXPECT_EQ(host.countOf(CallKind::OpenMember), 0);
}

TEST_F(ItemExtractionTest, NegativeIndexOpensNoEntry) {
    for (const int32_t index : {-1, -4, INT32_MIN}) {
        SCOPED_TRACE(index);
        expectRefused(extractIndex(*scan, index), VwSpecialFailed);
    }
    EXPECT_EQ(host.countOf(CallKind::OpenMember), 0);
}

TEST_F(ItemExtractionTest, NoIndexIsValidBeforeTheScan) {
    Scan fresh(host);
    fresh.open();

    expectRefused(extractIndex(fresh, 0), VwSpecialFailed);
}

TEST_F(ItemExtractionTest, ItemByIndexIsReadByTheseCalls) {
    extractIndex(*scan, 1);

    std::vector<std::string> calls = host.callTexts();
    std::erase(calls, "UTXMLGetNextAttribute()");
    ASSERT_GE(calls.size(), 12U);
    calls.erase(calls.begin(), calls.begin() + 3); // the request's own block
    calls.resize(9);
    EXPECT_THAT(calls, ElementsAre(testing::StartsWith("SYSNativeLock("), "open(40, 1)",
                                   "UTXMLInit(entry Local/Notes/Notes.xml)", "UTXMLSetOption(4, 1)",
                                   "UTXMLAddTagMap(\"\", 0, 0, 6 rows)", "UTXMLReadNextTag()",
                                   "UTXMLRestoreStateInfo()", "UTXMLAddTagMap(\"\", 0, 0, 7 rows)",
                                   "IOCreate(35, output, 0x1012)"));
}

TEST_F(ItemExtractionTest, RequestIsUnlockedLast) {
    extractIndex(*scan, 1);

    const auto calls = host.callTexts();
    ASSERT_GE(calls.size(), 5U);
    // After the unlock the test itself frees the request.
    EXPECT_THAT(std::vector(calls.end() - 5, calls.end()),
                ElementsAre("close(__nameid_version1.0)", "UTXMLDeInit()",
                            "close(entry Local/Notes/Notes.xml)",
                            testing::StartsWith("SYSNativeUnlock("),
                            testing::StartsWith("SYSNativeFree(")));
}

TEST_F(ItemExtractionTest, NoCallbackIsNeeded) {
    const Outcome outcome = extractIndexWithoutCallback(*scan, 1);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.message, HasText(subjectTag, u"two"));
    EXPECT_TRUE(outcome.message.isRootClosed());
}

// --- By location.

TEST_F(ItemExtractionTest, LocationNamesAnItemOfAnEntry) {
    expectDone(extractAt(*scan, 1, 1), u"one");
    expectDone(extractAt(*scan, 1, 2), u"two");
    expectDone(extractAt(*scan, 1, 3), u"three");
    expectDone(extractAt(*scan, 3, 1), u"four");
}

TEST_F(ItemExtractionTest, LocationNeedsNoScan) {
    Scan fresh(host);
    fresh.open();

    expectDone(extractAt(fresh, 3, 1), u"four");
    EXPECT_THAT(fresh.rows(), IsEmpty());
}

TEST_F(ItemExtractionTest, ItemNumber0OpensNoEntry) {
    expectRefused(extractAt(*scan, 1, 0), VwSpecialNoItem);

    EXPECT_EQ(host.countOf(CallKind::OpenMember), 0);
}

TEST_F(ItemExtractionTest, FirstItemIsFoundWithoutSkipping) {
    extractAt(*scan, 1, 1);

    EXPECT_EQ(host.countOf(CallKind::SkipTag), 0);
    EXPECT_EQ(host.countOf(CallKind::RestoreStateInfo), 0);
}

TEST_F(ItemExtractionTest, WalkSkipsElementsOfAnyName) {
    FakeHost own;
    own.entry("a.xml", document("notes")
                           .open("other")
                           .element("note", "x")
                           .close()
                           .open("note")
                           .element(title, "found"));
    Scan fresh(own);
    fresh.open();

    expectDone(extractAt(fresh, 0, 2), u"found");
    EXPECT_THAT(own.callsOf("UTXMLSkipTag"), SizeIs(1));
}

// A note without elements: the required properties, the defaults, and nothing else.
std::vector<fakehost::PropertyEntry> emptyNote() {
    return {
        {0x10090102, 6, 0},   {0x001A001F, 6, 30},      {0x0E1F000B, 6, 0},    {0x0FF70003, 6, 0},
        {0x0FF40003, 6, 2},   {0x340D0003, 6, 0x40E79}, {0x3FDE0003, 6, 1200}, {0x80000003, 6, 3},
        {0x80010003, 6, 166}, {0x80020003, 6, 200},     {0x80030003, 6, 80},   {0x80040003, 6, 80},
    };
}

class ItemExtractionPastEndTest : public ItemExtractionTest,
                                  public testing::WithParamInterface<uint32_t> {};

TEST_P(ItemExtractionPastEndTest, NumberPastTheLastItemMakesAnEmptyMessage) {
    const Outcome outcome = extractAt(*scan, 1, GetParam());

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.status, 0);
    ASSERT_TRUE(outcome.message.has(properties));
    EXPECT_EQ(outcome.message.entries(), emptyNote());
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_THAT(outcome.progress, ElementsAre(100));
    EXPECT_EQ(outcome.openHandles, 0);
    // The walk stops at the root's closing tag, whatever the number.
    EXPECT_EQ(host.countOf(CallKind::SkipTag), 3);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ItemExtractionPastEndTest,
                         testing::Values(4U, 5U, 6U, 100U, 0x80000000U, 0xFFFFFFFFU),
                         testing::PrintToStringParamName());

TEST_F(ItemExtractionTest, WalkWithAFailingReaderFindsNoItem) {
    for (const int32_t status : {-1, 1}) {
        host.failCall(CallKind::SkipTag, 1, status);
        expectRefused(extractAt(*scan, 1, 3), VwSpecialNoItem);
    }
}

TEST_F(ItemExtractionTest, WalkThroughABrokenDocumentFindsNoItem) {
    FakeHost own;
    own.entry("a.xml", document("notes").element("note").open("note").breakOff());
    own.entry("b.xml", document("notes").element("note").breakOff());
    Scan fresh(own);
    fresh.open();

    for (const uint32_t item : {3U, 4U, 0xFFFFFFFFU}) {
        expectRefused(extractAt(fresh, 0, item), VwSpecialNoItem);
        expectRefused(extractAt(fresh, 1, item), VwSpecialNoItem);
    }
}

TEST_F(ItemExtractionTest, EntryPastTheDirectoryFails) {
    for (const uint32_t entry : {4U, 0xFFFFFFFFU}) {
        expectRefused(extractAt(*scan, entry, 1), VwSpecialFailed);
    }
}

// --- The callback.

TEST_F(ItemExtractionTest, ProgressIsReportedAfterEachTag) {
    // Seven elements make 100: each of them counts 14.
    const Outcome outcome = extractIndex(*scan, 0);

    EXPECT_THAT(outcome.progress, ElementsAre(14, 14, 100));
}

TEST_F(ItemExtractionTest, CancelAt100StillFinishesTheMessage) {
    const Outcome outcome = extractIndex(*scan, 1, [](int32_t value) { return value == 100; });

    expectDone(outcome, u"two");
    EXPECT_TRUE(outcome.message.has(properties));
}

class ItemExtractionCancelTest : public ItemExtractionTest,
                                 public testing::WithParamInterface<int32_t> {};

TEST_P(ItemExtractionCancelTest, CancelBefore100LeavesTheMessageUnfinished) {
    const Outcome outcome = extractIndex(*scan, 1, [](int32_t) { return GetParam(); });

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.progress, SizeIs(1));
    EXPECT_FALSE(outcome.message.has(properties));
    EXPECT_EQ(outcome.message.stream("__substg1.0_0037001F"), fakehost::utf16(u"two"));
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.handlesLeftOpen, 0);
    expectReleased(outcome);
}

INSTANTIATE_TEST_SUITE_P(Answers, ItemExtractionCancelTest, testing::Values(1, -1, 256, 65536),
                         [](const auto& row) {
                             return std::string(row.param < 0 ? "Minus" : "Plus")
                                 .append(std::to_string(std::abs(row.param)));
                         });

// --- Together with a scan.

TEST_F(ItemExtractionTest, ExtractionDoesNotMoveTheScan) {
    Scan paused(host);
    paused.open();
    paused.onBreak = [](uint16_t code) { return uint16_t{code == BreakEntry}; };
    paused.read();
    paused.read();
    ASSERT_THAT(paused.rows(), SizeIs(3));

    expectDone(extractIndex(paused, 2), u"three");
    expectDone(extractAt(paused, 3, 1), u"four");
    expectRefused(extractIndex(paused, 3), VwSpecialFailed);

    ScanPosition position{};
    VwGetData(&position, paused.proc());
    EXPECT_EQ(position.currentEntry, 2U);
    paused.read();
    paused.read();
    ASSERT_THAT(paused.rows(), SizeIs(4));
    EXPECT_TRUE(paused.isAtEnd());
    expectDone(extractIndex(paused, 3), u"four");
}

TEST_F(ItemExtractionTest, EachExtractionOpensItsEntryAgain) {
    extractIndex(*scan, 0);
    extractIndex(*scan, 0);
    extractAt(*scan, 1, 1);

    EXPECT_THAT(host.callsOf("open"), ElementsAre("open(40, 1)", "open(40, 1)", "open(40, 1)"));
    EXPECT_THAT(host.callsOf("UTXMLDeInit"), SizeIs(3));
}

TEST_F(ItemExtractionTest, SameItemMakesTheSameMessage) {
    const StoredMessage byIndex = extractIndex(*scan, 1).message;
    const StoredMessage byLocation = extractAt(*scan, 1, 2).message;

    EXPECT_EQ(testing::PrintToString(byIndex), testing::PrintToString(byLocation));
    EXPECT_EQ(byIndex.classId(), byLocation.classId());
}

// --- Failures.

TEST_F(ItemExtractionTest, RequestThatCantBeLockedBailsOut) {
    struct Gone {};
    scan->onBail = [](uint32_t) { throw Gone(); };
    host.failCall(CallKind::Lock, 1); // the test itself locks the request first

    EXPECT_THROW(extractIndex(*scan, 0), Gone);

    EXPECT_THAT(host.callsOf("SoRtnBail"), ElementsAre("SoRtnBail(461)"));
    EXPECT_EQ(host.countOf(CallKind::OpenMember), 0);
}

TEST_F(ItemExtractionTest, EntryThatCantBeOpenedFails) {
    host.failCall(CallKind::OpenMember, 0);
    expectRefused(extractIndex(*scan, 0), VwSpecialFailed);
    host.failCall(CallKind::OpenMember, 0);
    expectRefused(extractAt(*scan, 1, 2), VwSpecialFailed);
    EXPECT_EQ(scan->bails(), 0);
}

TEST_F(ItemExtractionTest, FailingReaderLeavesItsEntryOpen) {
    for (const CallKind kind : {CallKind::ReaderInit, CallKind::AddTagMap}) {
        host.failCall(kind, 0, 5);
        const Outcome outcome = extractIndex(*scan, 0);

        EXPECT_EQ(outcome.result, VwSpecialFailed);
        EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
        EXPECT_FALSE(outcome.message.hasRoot());
        EXPECT_EQ(outcome.handlesLeftOpen, 1);
        EXPECT_EQ(outcome.lockedBlocks, 0);
    }
}

// Without a root tag the item counts as an appointment, which has no first tag either.
TEST_F(ItemExtractionTest, EntryWithoutAnyTagFails) {
    const Outcome outcome = extractAt(*scan, 2, 1);

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    expectReleased(outcome);
}

TEST_F(ItemExtractionTest, WriterThatThrowsLeavesItsStorageToTheHost) {
    const Outcome outcome = extractItem(document("notes").open("unknown"));

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_TRUE(outcome.message.hasRoot());
    EXPECT_FALSE(outcome.message.isRootClosed());
    EXPECT_FALSE(outcome.message.has(properties));
    EXPECT_GT(outcome.handlesLeftOpen, 0);
    expectReleased(outcome);
}

// Watches the status of a request while the module closes the entry of its parser: every entry
// that the archive opens gets a `close` that notes the status.
class ItemExtractionStatusTest : public ItemExtractionTest {
protected:
    void SetUp() override {
        ItemExtractionTest::SetUp();
        HostStream& archive = *scan->proc()->archive;
        openEntry = archive.open;
        archive.open = openWatched;
        status = 0xFFFF;
        statusAtClose.clear();
    }

    int32_t extract(uint32_t entryIndex, uint32_t itemNumber) {
        const uint64_t request = SYSNativeAlloc(sizeof(SODOSPECIALARC));
        auto* record = new (SYSNativeLock(request)) SODOSPECIALARC{};
        record->output = host.newOutput();
        record->flags = SpecialByLocation;
        record->locator = {sizeof(ItemLocator), entryIndex, itemNumber};
        HostStream* const output = record->output;
        SYSNativeUnlock(request);

        const int32_t result = VwDoSpecial(0, request, nullptr, nullptr, &status, 0, scan->proc());

        SYSNativeFree(request);
        host.endOutput(output);
        return result;
    }

    static inline uint16_t status;
    static inline std::vector<uint16_t> statusAtClose;

private:
    static int32_t openWatched(HostStream** handle, uint32_t code, void* request, uint32_t mode) {
        const int32_t result = openEntry(handle, code, request, mode);
        if (*handle != nullptr) {
            closeEntry = (*handle)->close;
            (*handle)->close = closeWatched;
        }
        return result;
    }

    static int32_t closeWatched(HostStream* handle) {
        statusAtClose.push_back(status);
        return closeEntry(handle);
    }

    static inline decltype(HostStream::open) openEntry;
    static inline decltype(HostStream::close) closeEntry;
};

TEST_F(ItemExtractionStatusTest, StatusIsSetBeforeTheParserOfARefusedWalkEnds) {
    host.failCall(CallKind::SkipTag, 1);

    EXPECT_EQ(extract(1, 3), VwSpecialNoItem);

    EXPECT_EQ(status, VwSpecialStatusFailed);
    EXPECT_THAT(statusAtClose, ElementsAre(VwSpecialStatusFailed));
}

TEST_F(ItemExtractionStatusTest, StatusIsSetBeforeTheParserOfAFailedItemEnds) {
    host.failCall(CallKind::CreateStorage, 0);

    EXPECT_EQ(extract(1, 1), VwSpecialFailed);

    EXPECT_EQ(status, VwSpecialStatusFailed);
    EXPECT_THAT(statusAtClose, ElementsAre(VwSpecialStatusFailed));
}

TEST_F(ItemExtractionStatusTest, StatusIs0WhileTheParserOfAWrittenItemEnds) {
    EXPECT_EQ(extract(1, 1), VwSpecialDone);

    EXPECT_EQ(status, 0);
    EXPECT_THAT(statusAtClose, ElementsAre(0));
}

TEST_F(ItemExtractionTest, FailedRequestDoesNotDisturbTheNext) {
    host.failCall(CallKind::CreateStorage, 0);
    EXPECT_EQ(extractIndex(*scan, 0).result, VwSpecialFailed);

    expectDone(extractIndex(*scan, 0), u"one");
}

ItemDocument wholeNote() {
    ItemDocument source = note().attribute("space", "preserve");
    source.open("OPFNoteCopyCategoryList");
    source.element("category").attribute("OPFCategoryCopyName", "Family").close();
    source.element("OPFNoteCopyCreationDate", "2018-06-21T00:39:08");
    return source.element(body, patternText(1500))
        .element("OPFNoteCopyText", "r")
        .element(title, "t");
}

class ItemExtractionSweepTest : public testing::TestWithParam<int32_t> {};

TEST_P(ItemExtractionSweepTest, NoHostFailureEscapesOrLeaks) {
    ASSERT_GT(fakehost::countHostCalls(wholeNote()), 50);

    fakehost::expectNoHostFailureEscapes(wholeNote(), {}, 0, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Statuses, ItemExtractionSweepTest, testing::Values(-1, 1),
                         [](const auto& row) { return row.param < 0 ? "Negative" : "Positive"; });

TEST(ItemExtractionCutTest, DocumentCutAfterAnyEventReturnsAResult) {
    fakehost::expectItemIsFinishedWhereverTheDocumentBreaks(
        wholeNote(), {},
        [](const StoredMessage& message) { EXPECT_TRUE(message.has(properties)); });
}

TEST(ItemExtractionShortWriteTest, ShortWriteReturnsAResult) {
    fakehost::expectNoShortWriteEscapes(wholeNote());
}

class ItemExtractionLengthTest : public testing::TestWithParam<int> {};

TEST_P(ItemExtractionLengthTest, TextOfAnyLengthIsWholeInItsStream) {
    const std::u16string text = patternText(static_cast<size_t>(GetParam()));

    const StoredMessage message = writeItem(note().element(body, text).element(title, text));

    EXPECT_THAT(message, HasText(0x1000001F, text));
    EXPECT_THAT(message, HasText(subjectTag, text));
}

INSTANTIATE_TEST_SUITE_P(Units, ItemExtractionLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000, 65535, 65536, 65537),
                         testing::PrintToStringParamName());

} // namespace
