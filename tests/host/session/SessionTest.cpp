#include "host/session/Session.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A row that outlives the callback.
struct KeptCell {
    std::u16string text;
    std::uint32_t tagId = Cell::noTag;
    std::uint32_t tagIndex = Cell::noTag;

    bool operator==(const KeptCell&) const = default;
};

struct KeptRow {
    std::uint64_t index = 0;
    std::array<KeptCell, textColumnCount> texts;
    std::array<std::uint32_t, 2> specials = {};
    std::uint64_t locatorSize = 0;
    std::uint32_t entry = 0;
    std::uint32_t item = 0;
    std::string entryName;

    bool operator==(const KeptRow&) const = default;
};

KeptRow keep(const Row& row) {
    KeptRow kept = {row.index,
                    {},
                    row.specials,
                    row.locatorSize,
                    row.entry,
                    row.item,
                    std::string(row.entryName)};
    for (std::size_t place = 0; place < textColumnCount; ++place) {
        const Cell& cell = row.texts[place];
        kept.texts[place] = {std::u16string(cell.text), cell.tagId, cell.tagIndex};
    }
    return kept;
}

// Keeps the bytes, and refuses them from the `failing`th call on.
class BufferSink : public ByteSink {
public:
    explicit BufferSink(int failing = -1) : failing(failing) {}

    bool append(std::span<const std::byte> more) override {
        if (refuses()) {
            return false;
        }
        bytes.insert(bytes.end(), more.begin(), more.end());
        return true;
    }

    bool overwrite(std::uint64_t offset, std::span<const std::byte> others) override {
        if (refuses() || offset + others.size() > bytes.size()) {
            return false;
        }
        std::ranges::copy(others, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        return true;
    }

    std::vector<std::byte> bytes;
    int calls = 0;

private:
    bool refuses() { return calls++ >= failing && failing >= 0; }

    int failing;
};

constexpr std::array<unsigned char, 8> compoundSignature = {0xD0, 0xCF, 0x11, 0xE0,
                                                            0xA1, 0xB1, 0x1A, 0xE1};

bool isCompoundFile(const std::vector<std::byte>& bytes) {
    return bytes.size() >= 1536 && bytes.size() % 512 == 0 &&
           std::memcmp(bytes.data(), compoundSignature.data(), compoundSignature.size()) == 0;
}

std::string note(const std::string& title) {
    return "<note><OPFNoteCopyTitle>" + title + "</OPFNoteCopyTitle></note>";
}

std::string notes(const std::vector<std::string>& titles) {
    std::string text = "<notes>";
    for (const std::string& title : titles) {
        text += note(title);
    }
    return text + "</notes>";
}

void openDone(Session& session, const MadeArchive& archive) {
    const OpenOutcome outcome = session.open(archive.path());
    ASSERT_EQ(outcome.status, OpenStatus::Done) << outcome.text;
}

std::vector<KeptRow> listAll(Session& session) {
    std::vector<KeptRow> rows;
    while (!session.list([&](const Row& row) {
        rows.push_back(keep(row));
        return RowAnswer::Continue;
    })) {
    }
    return rows;
}

std::vector<std::u16string> namesOf(const std::vector<KeptRow>& rows) {
    std::vector<std::u16string> names;
    names.reserve(rows.size());
    for (const KeptRow& row : rows) {
        names.push_back(row.texts[0].text);
    }
    return names;
}

TEST(SessionTest, MailRowHasAllColumnsAsTheModuleSendsThem) {
    const MadeArchive archive{
        {"Accounts/", ""},
        {"Accounts/In/message_00000.xml",
         "<emails><email>"
         "<OPFMessageCopyCCAddresses><emailAddress OPFContactEmailAddressAddress=\"c@x\"/>"
         "</OPFMessageCopyCCAddresses>"
         "<OPFMessageCopyFromAddresses><emailAddress OPFContactEmailAddressAddress=\"f@x\" "
         "OPFContactEmailAddressName=\"F\"/></OPFMessageCopyFromAddresses>"
         "<OPFMessageCopyReceivedTime>2018-06-21T00:00:02</OPFMessageCopyReceivedTime>"
         "<OPFMessageCopySentTime>2018-06-21T00:00:01</OPFMessageCopySentTime>"
         "<OPFMessageCopySubject>Tide \xF0\x9F\x8C\x8A</OPFMessageCopySubject>"
         "<OPFMessageCopyToAddresses><emailAddress OPFContactEmailAddressAddress=\"a@x\"/>"
         "<emailAddress/><emailAddress OPFContactEmailAddressAddress=\"b@x\"/>"
         "</OPFMessageCopyToAddresses>"
         "</email></emails>"},
    };
    Session session;
    openDone(session, archive);

    const std::vector<KeptRow> rows = listAll(session);

    using namespace std::string_literals;
    KeptRow expected;
    expected.texts = {{
        {u"Accounts\0In\0Tide \U0001F30A.msg"s, Cell::noTag, Cell::noTag},
        {u"f@x", 0x1367C, 0},
        {u"a@x;;b@x", 0x1366A, 1},
        {u"c@x", 0x1366B, 2},
        {u"Tide \U0001F30A", 0x1366D, 3},
        {u"2018-06-21T00:00:01", 0x13683, 4},
        {u"2018-06-21T00:00:02", 0x1367F, 5},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
    }};
    expected.specials = {0x30000, 4};
    expected.locatorSize = 16;
    expected.entry = 1;
    expected.item = 1;
    expected.entryName = "Accounts/In/message_00000.xml";
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0], expected);
}

TEST(SessionTest, AppointmentRowHasItsOrganizerTwice) {
    const MadeArchive archive{{"Calendar.xml",
                               "<appointments><appointment>"
                               "<OPFCalendarEventCopyModDate>2018-06-21T01:43:27"
                               "</OPFCalendarEventCopyModDate>"
                               "<OPFCalendarEventCopyOrganizer>o@x</OPFCalendarEventCopyOrganizer>"
                               "<OPFCalendarEventCopySummary>Ebb</OPFCalendarEventCopySummary>"
                               "</appointment></appointments>"}};
    Session session;
    openDone(session, archive);

    const std::vector<KeptRow> rows = listAll(session);

    KeptRow expected;
    expected.texts = {{
        {u"Ebb.msg", Cell::noTag, Cell::noTag},
        {u"o@x", 0x1367C, 0},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
        {u"Ebb", 0x1366D, 1},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
        {u"2018-06-21T01:43:27", 0x13681, 2},
        {u"o@x", 0x13727, 3},
        {u"", Cell::noTag, Cell::noTag},
        {u"", Cell::noTag, Cell::noTag},
    }};
    expected.specials = {0x50000, 6};
    expected.locatorSize = 16;
    expected.item = 1;
    expected.entryName = "Calendar.xml";
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0], expected);
}

TEST(SessionTest, ContactRowIsNamedByItsDisplayName) {
    const MadeArchive archive{{"Contacts.xml",
                               "<contacts><contact>"
                               "<OPFContactCopyBusinessTitle>Pilot</OPFContactCopyBusinessTitle>"
                               "<OPFContactCopyDisplayName>Ann</OPFContactCopyDisplayName>"
                               "</contact><contact/></contacts>"}};
    Session session;
    openDone(session, archive);

    const std::vector<KeptRow> rows = listAll(session);

    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].texts[0].text, u"Ann.msg");
    EXPECT_EQ(rows[0].texts[9], (KeptCell{u"Ann", 0x13675, 0}));
    EXPECT_EQ(rows[0].texts[10], (KeptCell{u"Pilot", 0x136D1, 1}));
    EXPECT_EQ(rows[0].specials, (std::array<std::uint32_t, 2>{0x40000, 5}));
    EXPECT_EQ(rows[1].index, 1U);
    EXPECT_EQ(rows[1].item, 2U);
    EXPECT_EQ(rows[1].texts[0].text, u"NONE.msg");
    EXPECT_EQ(rows[1].texts[9], KeptCell{}) << "the cell of the previous row";
}

TEST(SessionTest, ColumnsAreAsTheModuleDefinesThem) {
    const MadeArchive archive{{"Notes.xml", notes({"a"})}};
    Session session;
    openDone(session, archive);

    const std::array<std::uint32_t, 11> numbers = {0x13689, 0x1367C, 0x1366A, 0x1366B,
                                                   0x1366D, 0x1367D, 0x1367F, 0x13681,
                                                   0x14F21, 0x14E3F, 0x13676};
    std::vector<Column> expected;
    for (const std::uint32_t number : numbers) {
        const std::uint32_t second = number == 0x13689 ? 0xC000000 : 0;
        expected.push_back({{25, number, 5}, {0, second, 0x1000B}, {79, 2, 0, 0}});
    }
    expected.push_back({{0, 0xFFFFFFFF, 0}, {0, 0x18000000, 1}, {79, 2, 0, 0}});
    expected.push_back({{0, 0xFFFFFFFF, 0}, {0, 0x1C000000, 1}, {79, 2, 0, 0}});
    expected.push_back({{0, 19, 0}, {0, 0, 19}, {79, 2, 0, 0}});

    EXPECT_EQ(session.columns(), expected);
}

TEST(SessionTest, PauseTakesEffectAfterTheCurrentEntry) {
    const MadeArchive archive{{"a.xml", notes({"1", "2"})}, {"b.xml", notes({"3"})}};
    Session session;
    openDone(session, archive);
    std::vector<std::u16string> names;
    const RowCallback pauser = [&](const Row& row) {
        names.emplace_back(row.text(TextColumn::Name));
        return RowAnswer::Pause;
    };

    EXPECT_FALSE(session.list(pauser));
    EXPECT_THAT(names, ElementsAre(u"1.msg", u"2.msg"));
    EXPECT_TRUE(session.list(pauser)) << "a pause at the last entry is the end";
    EXPECT_THAT(names, ElementsAre(u"1.msg", u"2.msg", u"3.msg"));
    EXPECT_TRUE(session.list(pauser));
    EXPECT_EQ(names.size(), 3U);
    EXPECT_EQ(session.itemCount(), 3U);
}

TEST(SessionTest, ExceptionOfARowCallbackLeavesListAndTheSessionContinues) {
    const MadeArchive archive{{"a.xml", notes({"1", "2"})}, {"b.xml", notes({"3"})}};
    Session session;
    openDone(session, archive);

    EXPECT_THROW(session.list([](const Row&) -> RowAnswer { throw std::runtime_error("stop"); }),
                 std::runtime_error);

    EXPECT_THAT(namesOf(listAll(session)), ElementsAre(u"3.msg"));
    EXPECT_EQ(session.itemCount(), 3U);
}

TEST(SessionTest, ArchiveWithoutEntriesIsAtItsEndAtOnce) {
    // The end record of an archive alone.
    std::string bytes("PK\5\6", 4);
    bytes.append(18, '\0');
    const MadeArchive place{{"x", ""}};
    std::ofstream(place.path(), std::ios::binary | std::ios::trunc) << bytes;
    Session session;
    openDone(session, place);

    EXPECT_TRUE(session.list([](const Row&) { return RowAnswer::Continue; }));
    EXPECT_EQ(session.entryCount(), 0U);
    EXPECT_EQ(session.entryName(0), "");
    EXPECT_FALSE(session.isOlmArchive());
}

TEST(SessionTest, ItemByIndexAndByLocationIsTheSameMessage) {
    const MadeArchive archive{{"a.xml", notes({"one"})}, {"b.xml", notes({"two", "three"})}};
    Session session;
    openDone(session, archive);
    listAll(session);
    std::vector<std::int32_t> values;

    BufferSink byIndex;
    const Extraction first = session.extract(2, byIndex, [&](std::int32_t value) {
        values.push_back(value);
        return 0;
    });
    BufferSink byPlace;
    const Extraction second = session.extractAt(1, 2, byPlace);
    BufferSink other;
    session.extract(1, other);

    EXPECT_EQ(first.end, ExtractionEnd::Whole);
    EXPECT_EQ(first.result, 0);
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(second.end, ExtractionEnd::Whole);
    EXPECT_TRUE(isCompoundFile(byIndex.bytes));
    EXPECT_EQ(byIndex.bytes, byPlace.bytes);
    EXPECT_NE(byIndex.bytes, other.bytes);
    ASSERT_FALSE(values.empty());
    EXPECT_EQ(values.back(), 100);
}

TEST(SessionTest, LocationNeedsNoListing) {
    const MadeArchive archive{{"a.xml", notes({"one"})}};
    Session session;
    openDone(session, archive);

    BufferSink sink;
    EXPECT_EQ(session.extractAt(0, 1, sink).end, ExtractionEnd::Whole);
    EXPECT_TRUE(isCompoundFile(sink.bytes));
}

TEST(SessionTest, ItemsCanBeExtractedWhileTheScanIsPaused) {
    const MadeArchive archive{{"a.xml", notes({"1"})}, {"b.xml", notes({"2"})}};
    Session session;
    openDone(session, archive);
    EXPECT_FALSE(session.list([](const Row&) { return RowAnswer::Pause; }));

    BufferSink sink;
    EXPECT_EQ(session.extract(0, sink).end, ExtractionEnd::Whole);
    EXPECT_EQ(session.extract(1, sink).end, ExtractionEnd::Refused) << "not listed yet";

    EXPECT_THAT(namesOf(listAll(session)), ElementsAre(u"2.msg"));
}

TEST(SessionTest, IndexThatNoItemHasIsRefused) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);
    listAll(session);

    for (const std::uint64_t index :
         {std::uint64_t{1}, std::uint64_t{1} << 31, std::uint64_t{1} << 32, ~std::uint64_t{0}}) {
        BufferSink sink;
        const Extraction extraction = session.extract(index, sink);
        EXPECT_EQ(extraction.end, ExtractionEnd::Refused) << index;
        EXPECT_EQ(extraction.result, 18) << index;
        EXPECT_EQ(extraction.status, 2) << index;
        EXPECT_EQ(sink.calls, 0) << index;
    }
}

TEST(SessionTest, ItemNumberZeroIsRefused) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);

    BufferSink sink;
    const Extraction extraction = session.extractAt(0, 0, sink);

    EXPECT_EQ(extraction.end, ExtractionEnd::Refused);
    EXPECT_EQ(extraction.result, 15);
    EXPECT_EQ(extraction.status, 2);
}

TEST(SessionTest, MissingEntryBeginsNoMessage) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);

    BufferSink sink;
    const Extraction extraction = session.extractAt(7, 1, sink);

    EXPECT_EQ(extraction.end, ExtractionEnd::NotBegun);
    EXPECT_EQ(extraction.result, 18);
    EXPECT_EQ(extraction.status, 2);
}

TEST(SessionTest, ItemNumberAfterTheLastWritesAnEmptyMessage) {
    const MadeArchive archive{{"a.xml", notes({"1", "2"})}};
    Session session;
    openDone(session, archive);

    BufferSink sink;
    const Extraction extraction = session.extractAt(0, 9, sink);

    EXPECT_EQ(extraction.end, ExtractionEnd::Whole);
    EXPECT_EQ(extraction.result, 0);
    EXPECT_TRUE(isCompoundFile(sink.bytes));
}

TEST(SessionTest, EntryOfUnknownRootEndsWithoutAMessage) {
    const MadeArchive archive{{"Categories.xml", "<categories><category/></categories>"}};
    Session session;
    openDone(session, archive);
    int calls = 0;

    BufferSink sink;
    const Extraction extraction = session.extractAt(0, 1, sink, [&](std::int32_t) {
        ++calls;
        return 0;
    });

    EXPECT_EQ(extraction.end, ExtractionEnd::UnknownRoot);
    EXPECT_EQ(calls, 0);
}

TEST(SessionTest, CancelledExtractionIsNotAMessage) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);

    BufferSink sink;
    const Extraction extraction = session.extractAt(0, 1, sink, [](std::int32_t) { return 1; });

    EXPECT_EQ(extraction.end, ExtractionEnd::Cancelled);
    EXPECT_EQ(extraction.result, 0);
    EXPECT_EQ(extraction.status, 0);
}

TEST(SessionTest, CancelAtTheLastStepComesTooLate) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);

    BufferSink cancelled;
    const Extraction extraction =
        session.extractAt(0, 1, cancelled, [](std::int32_t value) { return value == 100 ? 1 : 0; });
    BufferSink undisturbed;
    session.extractAt(0, 1, undisturbed);

    EXPECT_EQ(extraction.end, ExtractionEnd::Whole);
    EXPECT_EQ(cancelled.bytes, undisturbed.bytes);
}

TEST(SessionTest, ExceptionOfTheProgressCallbackLeavesExtractAndTheSessionContinues) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;
    openDone(session, archive);
    BufferSink sink;

    EXPECT_THROW(session.extractAt(0, 1, sink,
                                   [](std::int32_t) -> int { throw std::runtime_error("stop"); }),
                 std::runtime_error);

    BufferSink next;
    EXPECT_EQ(session.extractAt(0, 1, next).end, ExtractionEnd::Whole);
}

// Every call of the sink fails once.
TEST(SessionTest, EveryFailureOfTheSinkIsReported) {
    const MadeArchive archive{{"a.xml", notes({std::string(9000, 'x')})}};
    Session session;
    openDone(session, archive);
    BufferSink whole;
    ASSERT_EQ(session.extractAt(0, 1, whole).end, ExtractionEnd::Whole);
    ASSERT_GT(whole.calls, 1);

    for (int failing = 0; failing < whole.calls; ++failing) {
        BufferSink sink(failing);
        EXPECT_EQ(session.extractAt(0, 1, sink).end, ExtractionEnd::SinkFailed) << failing;
    }

    BufferSink again;
    EXPECT_EQ(session.extractAt(0, 1, again).end, ExtractionEnd::Whole);
    EXPECT_EQ(again.bytes, whole.bytes);
}

TEST(SessionTest, SessionsInOneThreadCanAlternate) {
    const MadeArchive archive{{"a.xml", notes({"1", "2"})}, {"b.xml", notes({"3"})}};
    const MadeArchive other{{"c.xml", notes({"4"})}, {"d.xml", notes({"5"})}};
    Session first;
    Session second;
    openDone(first, archive);
    openDone(second, other);
    std::vector<std::u16string> names;
    const RowCallback pauser = [&](const Row& row) {
        names.emplace_back(row.text(TextColumn::Name));
        return RowAnswer::Pause;
    };

    EXPECT_FALSE(first.list(pauser));
    EXPECT_FALSE(second.list(pauser));
    BufferSink sink;
    EXPECT_EQ(first.extract(1, sink).end, ExtractionEnd::Whole);
    EXPECT_TRUE(first.list(pauser));
    EXPECT_TRUE(second.list(pauser));

    EXPECT_THAT(names, ElementsAre(u"1.msg", u"2.msg", u"4.msg", u"3.msg", u"5.msg"));
}

TEST(SessionTest, SessionsInFourThreadsExtractWhatOneExtracts) {
    constexpr int threadCount = 4;
    constexpr std::size_t itemCount = 40;
    std::vector<std::string> titles;
    for (std::size_t item = 0; item < itemCount; ++item) {
        titles.push_back("note " + std::to_string(item));
    }
    const MadeArchive archive{{"a/a.xml", notes(titles)}, {"b/b.xml", notes(titles)}};
    const auto readAll = [&archive] {
        std::vector<std::vector<std::byte>> messages;
        Session session;
        EXPECT_EQ(session.open(archive.path()).status, OpenStatus::Done);
        listAll(session);
        for (std::uint64_t index = 0; index < session.itemCount(); ++index) {
            BufferSink sink;
            EXPECT_EQ(session.extract(index, sink).end, ExtractionEnd::Whole);
            messages.push_back(sink.bytes);
        }
        return messages;
    };
    const auto expected = readAll();
    ASSERT_EQ(expected.size(), 2 * itemCount);

    std::array<std::vector<std::vector<std::byte>>, threadCount> results;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (auto& result : results) {
        threads.emplace_back([&] { result = readAll(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    for (const auto& result : results) {
        EXPECT_EQ(result, expected);
    }
}

TEST(SessionTest, TruncatedDocumentHasItsItemsAndAFault) {
    const MadeArchive archive{
        {"x.png", "no document"},
        {"a.xml", "<notes>" + note("1") + note("2") + "<note><OPFNoteCopyTitle>thr"},
        {"b.xml", notes({"4"})},
    };
    Session session;
    openDone(session, archive);

    EXPECT_THAT(namesOf(listAll(session)), ElementsAre(u"1.msg", u"2.msg", u"thr.msg", u"4.msg"));
    ASSERT_EQ(session.faults().size(), 1U);
    EXPECT_EQ(session.faults()[0].kind, FaultKind::BrokenMarkup);
    EXPECT_EQ(session.faults()[0].entryIndex, 1U);
    EXPECT_NE(session.faults()[0].text, "");
}

TEST(SessionTest, ExtractionReportsTheEntriesThatItsItemNames) {
    const MadeArchive archive{
        {"a.xml",
         "<emails><email><OPFMessageCopyAttachmentList>"
         "<messageAttachment OPFAttachmentURL=\"there.txt\"/><messageAttachment/>"
         "<messageAttachment OPFAttachmentURL=\"gone.txt\"/></OPFMessageCopyAttachmentList>"
         "</email><email/></emails>"},
        {"there.txt", "twelve bytes"},
    };
    Session session;
    openDone(session, archive);

    for (int time = 0; time < 2; ++time) {
        BufferSink sink;
        const Extraction extraction = session.extractAt(0, 1, sink);

        EXPECT_EQ(extraction.end, ExtractionEnd::Whole);
        ASSERT_EQ(extraction.members.size(), 2U);
        EXPECT_EQ(extraction.members[0].name, "there.txt");
        EXPECT_EQ(extraction.members[0].entryIndex, 1U);
        EXPECT_EQ(extraction.members[0].bytesRead, 12U);
        EXPECT_EQ(extraction.members[0].fault, "");
        EXPECT_EQ(extraction.members[1].name, "gone.txt");
        EXPECT_EQ(extraction.members[1].entryIndex, std::nullopt);
        EXPECT_EQ(extraction.members[1].fault, "there is no file named \"gone.txt\"");
    }
    BufferSink sink;
    EXPECT_TRUE(session.extractAt(0, 2, sink).members.empty());
    EXPECT_EQ(session.faults().size(), 1U);
}

TEST(SessionTest, ExtractionReportsTheFaultThatItsItemReaches) {
    const MadeArchive archive{{"a.xml", "<notes>" + note("1") + "<note><OPFNoteCopyTitle>tw"}};
    Session session;
    openDone(session, archive);
    listAll(session);

    BufferSink first;
    EXPECT_TRUE(session.extract(0, first).faults.empty());
    BufferSink second;
    const Extraction broken = session.extract(1, second);

    EXPECT_EQ(broken.end, ExtractionEnd::Whole);
    ASSERT_EQ(broken.faults.size(), 1U);
    EXPECT_EQ(broken.faults[0].kind, FaultKind::BrokenMarkup);
    EXPECT_EQ(broken.faults[0].entryIndex, 0U);
}

TEST(SessionTest, ArchivesOfItemsOrCategoriesAreOlmArchives) {
    const MadeArchive items{{"a.xml", notes({"1"})}};
    const MadeArchive noItems{{"other.xml", "<html/>"}, {"a.xml", "<tasks/>"}};
    const MadeArchive categories{{"Categories.xml", "<categories/>"}};
    const MadeArchive passedOver{{"a.xml.xml", "<notes/>"}, {".xml", "<html/>"}};
    for (const MadeArchive* archive : {&items, &noItems, &categories, &passedOver}) {
        Session session;
        openDone(session, *archive);
        listAll(session);
        EXPECT_TRUE(session.isOlmArchive());
        EXPECT_TRUE(session.faults().empty());
    }
}

TEST(SessionTest, OtherZipArchivesAreNotOlmArchives) {
    const MadeArchive noDocument{{"a.txt", "text"}, {".xml", "<html/>"}};
    const MadeArchive otherDocument{{"a.xml", "<html><notes/></html>"}};
    const MadeArchive wrongName{{"a.xml.txt", "<notes/>"}, {"b.XML", "<notes/>"}};
    for (const MadeArchive* archive : {&noDocument, &otherDocument, &wrongName}) {
        Session session;
        openDone(session, *archive);
        listAll(session);
        EXPECT_FALSE(session.isOlmArchive());
    }
}

TEST(SessionTest, MissingFileIsUnreadable) {
    Session session;

    const OpenOutcome outcome = session.open("/nowhere/mail.olm");

    EXPECT_EQ(outcome.status, OpenStatus::Unreadable);
    EXPECT_NE(outcome.text, "");
}

TEST(SessionTest, OtherFileIsDistinguishedFromADamagedArchive) {
    const MadeArchive place{{"a.xml", notes({"1"})}};
    std::ifstream input(place.path(), std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(input)), {});
    Session session;

    std::ofstream(place.path(), std::ios::trunc) << "Dear diary, today nothing was zipped.";
    EXPECT_EQ(session.open(place.path()).status, OpenStatus::NotAnArchive);
    std::ofstream(place.path(), std::ios::binary | std::ios::trunc)
        << whole.substr(0, whole.size() / 2);
    EXPECT_EQ(session.open(place.path()).status, OpenStatus::Damaged);
    std::ofstream(place.path(), std::ios::binary | std::ios::trunc) << whole;
    EXPECT_EQ(session.open(place.path()).status, OpenStatus::Done)
        << "a session can be tried again";
}

TEST(SessionTest, FindsTheModuleBesideTheLibrary) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    Session session;

    EXPECT_EQ(session.open(archive.path(), SessionOptions{}).status, OpenStatus::Done);
}

TEST(SessionTest, MissingModuleIsNotAFaultOfTheArchive) {
    const MadeArchive archive{{"a.xml", notes({"1"})}};
    SessionOptions options;
    options.modulePath = "/nowhere/olmfilter.so";
    Session session;

    const OpenOutcome outcome = session.open(archive.path(), options);

    EXPECT_EQ(outcome.status, OpenStatus::NoModule);
    EXPECT_THAT(outcome.text, HasSubstr("/nowhere/olmfilter.so"));
}

} // namespace
} // namespace olmhost
