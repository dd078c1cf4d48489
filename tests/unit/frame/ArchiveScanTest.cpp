#include <cstring>
#include <memory>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

#include "tests/fakehost/Extraction.h"
#include "tests/fakehost/LeakExemption.h"
#include "tests/fakehost/Matchers.h"

namespace {

using fakehost::Bytes;
using fakehost::CallKind;
using fakehost::document;
using fakehost::extractIndex;
using fakehost::FakeHost;
using fakehost::HasText;
using fakehost::ItemDocument;
using fakehost::Row;
using fakehost::Scan;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

ItemDocument notes(const std::vector<std::string>& titles) {
    ItemDocument source = document("notes");
    for (const std::string& title : titles) {
        source.open("note").element("OPFNoteCopyTitle", title).close();
    }
    return source;
}

std::vector<std::string> titlesOf(const std::vector<Row>& rows) {
    std::vector<std::string> titles;
    titles.reserve(rows.size());
    for (const Row& row : rows) {
        titles.push_back(row.text(5));
    }
    return titles;
}

class ArchiveScanTest : public testing::Test {
protected:
    Scan& open() {
        scan = std::make_unique<Scan>(host);
        EXPECT_EQ(scan->open(), VwOpenDone);
        host.forgetCalls();
        return *scan;
    }

    std::vector<std::string> breaks() const { return host.callsOf("SoRtnBreak"); }

    FakeHost host;
    std::unique_ptr<Scan> scan;
};

// --- Opening and closing.

TEST_F(ArchiveScanTest, OpenPassesItsWordsInAZeroedRequest) {
    scan = std::make_unique<Scan>(host);

    EXPECT_EQ(scan->open(0xABCD, 0x1122334455667788), VwOpenDone);

    ArchiveOpenRequest expected;
    std::memset(&expected, 0, sizeof expected);
    expected.word = 0xABCD;
    expected.fileWord = 0x1122334455667788;
    EXPECT_EQ(std::memcmp(&host.lastArchiveRequest(), &expected, sizeof expected), 0);
    EXPECT_EQ(host.countOf(CallKind::OpenArchive), 1);
}

class ArchiveScanOpenTest : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(ArchiveScanOpenTest, FailedOpenIsReportedByTheLowTwoFlags) {
    for (const int32_t status : {-1, 1, 14}) {
        FakeHost host;
        host.refuseArchive(status, static_cast<uint16_t>(GetParam().first));
        Scan scan(host);

        EXPECT_EQ(scan.open(), GetParam().second);

        // No list of items was made: the block holds null there.
        uint64_t items = 1;
        std::memcpy(&items, reinterpret_cast<uint8_t*>(scan.proc()) + 64, sizeof items);
        EXPECT_EQ(items, 0U);
        EXPECT_EQ(host.openHandles(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Flags, ArchiveScanOpenTest,
                         testing::Values(std::pair(0, 9), std::pair(1, 14), std::pair(2, 14),
                                         std::pair(3, 14), std::pair(4, 9), std::pair(0xFFFC, 9),
                                         std::pair(0xFFFF, 14)),
                         [](const auto& row) { return std::to_string(row.param.first); });

TEST_F(ArchiveScanTest, CloseEndsTheArchiveOnce) {
    host.entry("a.xml", notes({"one", "two"}));
    open().read();
    host.forgetCalls();

    scan->close();

    EXPECT_THAT(host.callTexts(), ElementsAre("close(archive)"));
    EXPECT_EQ(host.openHandles(), 0);
}

TEST_F(ArchiveScanTest, CloseBeforeAnyReadReleasesEverything) {
    open().close();

    EXPECT_EQ(host.openHandles(), 0);
}

// --- Which entries are documents.

struct NameCase {
    const char* title;
    const char* name;
    bool isDocument;
};

class ArchiveScanNameTest : public testing::TestWithParam<NameCase> {};

TEST_P(ArchiveScanNameTest, DocumentIsAnEntryWhoseFirstSuffixIsItsLast) {
    FakeHost host;
    host.entry(GetParam().name, notes({"one"}));
    Scan scan(host);

    scan.run();

    EXPECT_EQ(scan.rows().size(), GetParam().isDocument ? 1U : 0U);
    EXPECT_EQ(host.countOf(CallKind::OpenMember), GetParam().isDocument ? 1 : 0);
    EXPECT_THAT(host.callsOf("SoRtnBreak"), testing::Contains("SoRtnBreak(11, 0)").Times(1));
}

INSTANTIATE_TEST_SUITE_P(
    Names, ArchiveScanNameTest,
    testing::Values(NameCase{"FiveBytes", "x.xml", true}, NameCase{"OnlyTheSuffix", ".xml", false},
                    NameCase{"Capitals", "a.XML", false},
                    NameCase{"TwoSuffixes", "a.xml.xml", false},
                    NameCase{"SuffixInAFolder", "a.xml/b.xml", false},
                    NameCase{"SuffixOnlyInside", "a.xml/b", false},
                    NameCase{"SuffixAndMore", "a.xmlx", false},
                    NameCase{"NamelessInAFolder", "a/.xml", true},
                    NameCase{"NoDot", "axxml", false}, NameCase{"Short", "a", false},
                    NameCase{"Empty", "", false}, NameCase{"Deep", "Local/Notes/Notes.xml", true},
                    NameCase{"NotAscii", "\xC3\xA9.xml", true}),
    [](const auto& row) { return row.param.title; });

// --- The scan.

TEST_F(ArchiveScanTest, EmptyDirectoryEndsAtOnceAtEachRead) {
    open();

    EXPECT_EQ(scan->read(), 0);
    EXPECT_THAT(host.callTexts(CallKind::Routine), ElementsAre("SoRtnBreak(2, 0)"));
    EXPECT_EQ(scan->read(), 0);
    EXPECT_THAT(breaks(), ElementsAre("SoRtnBreak(2, 0)", "SoRtnBreak(2, 0)"));
}

TEST_F(ArchiveScanTest, EveryEntryHasItsBreak) {
    host.entry("Local/", Bytes{}).entry("a.xml", notes({"one", "two"})).entry("picture", Bytes{});
    open();

    EXPECT_EQ(scan->read(), 0);

    EXPECT_THAT(breaks(),
                ElementsAre("SoRtnBreak(11, 0)", "SoRtnBreak(5, 0)", "SoRtnBreak(5, 0)",
                            "SoRtnBreak(11, 0)", "SoRtnBreak(11, 0)", "SoRtnBreak(2, 0)"));
    EXPECT_EQ(scan->rows().at(1).locator.entryIndex, 1U);
    EXPECT_EQ(scan->rows().at(1).locator.itemNumber, 2U);
}

TEST_F(ArchiveScanTest, DocumentIsReadByTheseCalls) {
    host.entry("a.xml", document("notes").element("note"));
    open();

    scan->read();

    std::vector<std::string> calls;
    for (const fakehost::HostCall& call : host.calls()) {
        if (call.kind != CallKind::Routine && call.kind != CallKind::GetNextAttribute) {
            calls.push_back(call.text);
        }
    }
    EXPECT_THAT(calls, ElementsAre("open(40, 0)", "UTXMLInit(entry a.xml)", "UTXMLSetOption(4, 1)",
                                   "UTXMLAddTagMap(\"\", 0, 0, 6 rows)", "UTXMLReadNextTag()",
                                   // the item's node
                                   "UTXMLAddTagMap(\"\", 0, 0, 12 rows)", "UTXMLGetStateInfo()",
                                   "UTXMLReadNextTag()", "UTXMLReadNextTag()",
                                   // the node that does not find an item
                                   "UTXMLAddTagMap(\"\", 0, 0, 12 rows)", "UTXMLGetStateInfo()",
                                   "UTXMLReadNextTag()", "UTXMLDeInit()", "close(entry a.xml)"));
}

TEST_F(ArchiveScanTest, DocumentOfAnUnknownKindHasNoRowAndNoMessage) {
    host.entry("Categories.xml", document("categories").element("category"));
    host.entry("a.xml", notes({"one"}));
    open();

    scan->read();

    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one"));
    EXPECT_EQ(scan->bails(), 0);
    EXPECT_EQ(host.openReaders(), 0);
}

TEST_F(ArchiveScanTest, EntryWithoutAnyTagIsReadAsAppointmentsWithoutRows) {
    host.entry("a.xml", ItemDocument());
    open();

    scan->read();

    EXPECT_THAT(scan->rows(), IsEmpty());
    EXPECT_EQ(scan->bails(), 0);
    ASSERT_THAT(host.tagMaps(), SizeIs(2));
    EXPECT_EQ(host.tagMaps()[1].front().first, "OPFCalendarEventCopyAttendeeList");
}

TEST_F(ArchiveScanTest, BrokenDocumentKeepsTheItemsUpToTheFault) {
    host.entry("a.xml", document("notes")
                            .element("note")
                            .open("note")
                            .element("OPFNoteCopyTitle", "cut")
                            .breakOff());
    host.entry("b.xml", notes({"whole"}));
    open();

    scan->read();

    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("", "cut", "whole"));
    EXPECT_EQ(scan->bails(), 0);
}

TEST_F(ArchiveScanTest, ManyItemsAreAllFound) {
    ItemDocument source = document("notes");
    for (int i = 0; i < 300; ++i) {
        source.open("note").element("OPFNoteCopyTitle", std::to_string(i)).close();
    }
    host.entry("a.xml", source);
    open().read();

    ASSERT_THAT(scan->rows(), SizeIs(300));
    EXPECT_EQ(scan->rows()[299].locator.itemNumber, 300U);
    EXPECT_THAT(extractIndex(*scan, 299).message, HasText(0x0037001F, u"299"));
}

// --- Pausing and repositioning.

TEST_F(ArchiveScanTest, HostCanPauseAfterEveryEntry) {
    host.entry("Local/", Bytes{}).entry("a.xml", notes({"one", "two"}));
    host.entry("b", Bytes{}).entry("c.xml", notes({"three"}));
    open();
    scan->onBreak = [](uint16_t code) { return uint16_t{code == BreakEntry}; };

    const std::vector<std::vector<std::string>> expected = {{}, {"one", "two"}, {"one", "two"}};
    for (const auto& titles : expected) {
        EXPECT_EQ(scan->read(), 0);
        EXPECT_THAT(titlesOf(scan->rows()), testing::ElementsAreArray(titles));
        EXPECT_FALSE(scan->isAtEnd());
    }
    EXPECT_EQ(scan->read(), 0);
    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one", "two", "three"));
    // A pause at the last entry does not delay the end.
    EXPECT_TRUE(scan->isAtEnd());
    EXPECT_EQ(breaks().back(), "SoRtnBreak(2, 0)");
}

TEST_F(ArchiveScanTest, EveryNonZeroAnswerPauses) {
    for (const uint16_t answer : {0x0001, 0x0100, 0x8000, 0xFFFF}) {
        FakeHost own;
        own.entry("a", Bytes{}).entry("b", Bytes{});
        Scan paused(own);
        paused.open();
        paused.onBreak = [answer](uint16_t) { return answer; };
        paused.read();
        EXPECT_THAT(own.callsOf("SoRtnBreak"), ElementsAre("SoRtnBreak(11, 0)"));
    }
}

TEST_F(ArchiveScanTest, AnswerAfterARowDoesNotPause) {
    host.entry("a.xml", notes({"one", "two"}));
    open();
    scan->onBreak = [](uint16_t code) { return uint16_t{code == BreakRow}; };

    scan->read();

    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one", "two"));
    EXPECT_TRUE(scan->isAtEnd());
}

TEST_F(ArchiveScanTest, PositionIsTheNextEntry) {
    host.entry("a.xml", notes({"one"})).entry("b", Bytes{});
    open();
    scan->onBreak = [](uint16_t) { return uint16_t{1}; };
    ScanPosition expected{};

    for (uint64_t entry = 0; entry <= 2; ++entry) {
        ScanPosition position;
        std::memset(&position, 0xCC, sizeof position);
        VwGetData(&position, scan->proc());
        expected.currentEntry = entry;
        EXPECT_EQ(std::memcmp(&position, &expected, sizeof position), 0);
        scan->read();
    }
}

TEST_F(ArchiveScanTest, EntryScannedAgainAddsItsItemsAgainWithTheSameLocator) {
    host.entry("a.xml", notes({"one", "two"}));
    open().read();
    const ScanPosition start{};

    VwSetData(&start, scan->proc());
    scan->read();

    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one", "two", "one", "two"));
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(scan->rows()[i + 2].locator.entryIndex, scan->rows()[i].locator.entryIndex);
        EXPECT_EQ(scan->rows()[i + 2].locator.itemNumber, scan->rows()[i].locator.itemNumber);
    }
    EXPECT_THAT(extractIndex(*scan, 1).message, HasText(0x0037001F, u"two"));
    EXPECT_THAT(extractIndex(*scan, 3).message, HasText(0x0037001F, u"two"));
    EXPECT_EQ(extractIndex(*scan, 4).result, VwSpecialFailed);
}

TEST_F(ArchiveScanTest, ScanMovedForwardSkipsEntries) {
    host.entry("a.xml", notes({"one"})).entry("b.xml", notes({"two"}));
    open();
    ScanPosition position{};
    position.currentEntry = 1;

    VwSetData(&position, scan->proc());
    scan->read();

    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("two"));
}

TEST_F(ArchiveScanTest, ScanMovedPastTheEndIsAtItsEnd) {
    host.entry("a.xml", notes({"one"}));
    open();
    ScanPosition position{};
    position.currentEntry = UINT64_MAX;

    VwSetData(&position, scan->proc());
    EXPECT_EQ(scan->read(), 0);

    EXPECT_THAT(host.callTexts(CallKind::Routine), ElementsAre("SoRtnBreak(2, 0)"));
}

// --- Failures.

TEST_F(ArchiveScanTest, EntryThatCantBeOpenedIsReportedAndSkipped) {
    host.brokenEntry("a.xml").entry("b.xml", notes({"one"}));
    open();

    EXPECT_EQ(scan->read(), 0);

    EXPECT_THAT(host.callsOf("SoRtnBail"), ElementsAre("SoRtnBail(461)"));
    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one"));
    EXPECT_THAT(breaks(), ElementsAre("SoRtnBreak(11, 0)", "SoRtnBreak(5, 0)", "SoRtnBreak(11, 0)",
                                      "SoRtnBreak(2, 0)"));
}

TEST_F(ArchiveScanTest, FailingReaderIsReportedAndSkipped) {
    host.entry("a.xml", notes({"one"})).entry("b.xml", notes({"two"}));
    open();
    host.failCall(CallKind::ReaderInit, 0);

    scan->read();

    EXPECT_EQ(scan->bails(), 1);
    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("two"));
}

TEST_F(ArchiveScanTest, FailureAfterAnItemKeepsItsRowAndItsLocation) {
    host.entry("a.xml", notes({"one", "two"})).entry("b.xml", notes({"three"}));
    open();
    host.failCall(CallKind::AddTagMap, 2); // the second node's

    scan->read();

    EXPECT_EQ(scan->bails(), 1);
    EXPECT_THAT(titlesOf(scan->rows()), ElementsAre("one", "three"));
    EXPECT_THAT(host.openHandleTexts(), ElementsAre("archive"));
    EXPECT_EQ(host.openReaders(), 0);
    EXPECT_THAT(extractIndex(*scan, 0).message, HasText(0x0037001F, u"one"));
    EXPECT_THAT(extractIndex(*scan, 1).message, HasText(0x0037001F, u"three"));
}

TEST_F(ArchiveScanTest, FailureWithinARowLeavesItIncompleteAndItsItemOut) {
    host.entry("a.xml", notes({"one", "two"})).entry("b.xml", notes({"three"}));
    open();
    int rowBreaks = 0;
    scan->onBreak = [&](uint16_t code) -> uint16_t {
        if (code == BreakRow && ++rowBreaks == 2) {
            throw std::runtime_error("an exception of the host");
        }
        return 0;
    };

    {
        const fakehost::LeakExemption currentNode;
        scan->read();
    }

    EXPECT_EQ(scan->bails(), 1);
    EXPECT_THAT(host.openHandleTexts(), ElementsAre("archive"));
    EXPECT_EQ(host.openReaders(), 0);
    EXPECT_THAT(extractIndex(*scan, 0).message, HasText(0x0037001F, u"one"));
    EXPECT_THAT(extractIndex(*scan, 1).message, HasText(0x0037001F, u"three"));
    EXPECT_EQ(extractIndex(*scan, 2).result, VwSpecialFailed);
}

TEST_F(ArchiveScanTest, BailThatDoesNotReturnEndsTheRead) {
    host.brokenEntry("a.xml").entry("b.xml", notes({"one"}));
    open();
    scan->onBail = [](uint32_t) { throw std::runtime_error("gone"); };

    EXPECT_THROW(scan->read(), std::runtime_error);

    EXPECT_THAT(scan->rows(), IsEmpty());
    EXPECT_THAT(breaks(), IsEmpty());
}

// Every host call fails once: the scan reaches its end and reports each document that it lost.
TEST_F(ArchiveScanTest, NoHostFailureStopsTheScan) {
    const auto fill = [](FakeHost& own) {
        ItemDocument source = document("emails").open("email").attribute("x", "y");
        source.open("OPFMessageCopyToAddresses")
            .element("emailAddress")
            .attribute("a", "b")
            .close();
        source.element("OPFMessageCopySubject", "s").element("other", "text").close();
        own.entry("a.xml", source.element("email")).entry("b.xml", notes({"last"}));
    };
    fill(host);
    open();
    host.resetCallCount();
    scan->read();
    ASSERT_THAT(scan->rows(), SizeIs(3));
    const int calls = host.hostCallCount();
    ASSERT_GT(calls, 50);

    for (const int32_t status : {-1, 1}) {
        for (int failing = 0; failing < calls; ++failing) {
            SCOPED_TRACE(testing::Message() << "call " << failing << ", status " << status);
            FakeHost own;
            fill(own);
            Scan swept(own);
            swept.open();
            own.failAnyCall(failing, status);
            EXPECT_EQ(swept.read(), 0);
            EXPECT_TRUE(own.hasFailed());
            EXPECT_TRUE(swept.isAtEnd());
            EXPECT_LE(swept.bails(), 1);
            for (const Row& row : swept.rows()) {
                EXPECT_TRUE(row.isComplete);
                EXPECT_EQ(row.cells.size(), 11U);
            }
            // Only a reader that was never ready leaves its entry open.
            const int lost = own.openHandles() - 1;
            EXPECT_LE(lost, swept.bails());
            EXPECT_LE(own.openReaders(), lost);
        }
    }
}

// --- Several archives.

TEST_F(ArchiveScanTest, TwoOpenArchivesShareNothing) {
    host.entry("a.xml", notes({"one", "two"}));
    Scan first(host);
    Scan second(host);
    first.open();
    second.open();

    first.read();
    EXPECT_THAT(second.rows(), IsEmpty());
    first.close();
    second.read();

    EXPECT_THAT(titlesOf(second.rows()), ElementsAre("one", "two"));
    EXPECT_THAT(extractIndex(second, 1).message, HasText(0x0037001F, u"two"));
}

TEST(ArchiveScanThreadsTest, ArchivesOnSeveralThreadsAreIndependent) {
    constexpr int rounds = 20;
    const auto work = [](const std::string& title, int& whole) {
        for (int i = 0; i < rounds; ++i) {
            FakeHost host;
            host.entry("a.xml", notes({title, title + "2"}));
            Scan scan(host);
            scan.run();
            const bool isListed = titlesOf(scan.rows()) == std::vector{title, title + "2"};
            const auto outcome = extractIndex(scan, 1);
            const Bytes subject = outcome.message.stream("__substg1.0_0037001F");
            whole += isListed && subject == fakehost::utf16(fakehost::toUtf16(title + "2"));
        }
    };
    int first = 0;
    int second = 0;

    std::thread one(work, "one", std::ref(first));
    std::thread two(work, "two", std::ref(second));
    one.join();
    two.join();

    EXPECT_EQ(first, rounds);
    EXPECT_EQ(second, rounds);
}

} // namespace
