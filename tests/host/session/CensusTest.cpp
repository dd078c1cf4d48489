#include "host/session/Census.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session/Session.h"
#include "tests/host/session/MadeArchive.h"

namespace olmhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// The results of a listing to the end.
struct Taken {
    Census census;
    std::vector<std::uint64_t> rowsOfKind = std::vector<std::uint64_t>(itemKindCount);
    std::vector<std::string> attachments; // "kind entry name"
    std::vector<EntryFault> faults;
};

// Lists, with a pause at every row if requested: the count may not depend on it.
Taken take(const std::string& path, RowAnswer answer = RowAnswer::Continue) {
    Session session;
    const OpenOutcome outcome = session.open(path);
    EXPECT_EQ(outcome.status, OpenStatus::Done) << outcome.text;
    Taken taken;
    session.setAttachmentCallback([&](const NamedAttachment& attachment) {
        taken.attachments.push_back(std::string(nameOf(attachment.kind)) + " " +
                                    std::string(attachment.entryName) + " " +
                                    std::string(attachment.name));
    });
    while (!session.list([&](const Row&) {
        ++taken.rowsOfKind[static_cast<std::size_t>(session.documentKind().value())];
        return answer;
    })) {
    }
    taken.census = session.census();
    taken.faults = session.faults();
    return taken;
}

Taken take(std::initializer_list<MadeArchive::Entry> entries) {
    const MadeArchive archive(entries);
    return take(archive.path());
}

std::uint64_t itemsOf(const Taken& taken, ItemKind kind) {
    return taken.census.of(kind).items;
}

std::uint64_t rowsOf(const Taken& taken, ItemKind kind) {
    return taken.rowsOfKind[static_cast<std::size_t>(kind)];
}

// Returns the only note on an archive's entries.
DocumentNote onlyNote(const Taken& taken) {
    EXPECT_THAT(taken.census.notes, SizeIs(1));
    return taken.census.notes.empty() ? DocumentNote() : taken.census.notes.front();
}

const std::string twoNotes = "<notes><note/><note><OPFNoteCopyTitle>t</OPFNoteCopyTitle></note>"
                             "</notes>";

TEST(CensusTest, CountsItemsAndDocumentsOfEveryKind) {
    const Taken taken = take({
        {"m1.xml", "<emails><email/></emails>"},
        {"m2.xml", "<emails><email></email> <email/></emails>"},
        {"a.xml", "<appointments><appointment/></appointments>"},
        {"c.xml", "<contacts><contact/><contact/></contacts>"},
        {"g.xml", "<groups><group/></groups>"},
        {"t.xml", "<tasks><task/><task/><task/></tasks>"},
        {"n.xml", twoNotes},
        {"picture.png", "<notes><note/></notes>"},
    });

    const auto counts = [&](ItemKind kind) {
        return std::pair(taken.census.of(kind).documents, itemsOf(taken, kind));
    };
    EXPECT_EQ(counts(ItemKind::Email), std::pair(2UL, 3UL));
    EXPECT_EQ(counts(ItemKind::Appointment), std::pair(1UL, 1UL));
    EXPECT_EQ(counts(ItemKind::Contact), std::pair(1UL, 2UL));
    EXPECT_EQ(counts(ItemKind::Group), std::pair(1UL, 1UL));
    EXPECT_EQ(counts(ItemKind::Task), std::pair(1UL, 3UL));
    EXPECT_EQ(counts(ItemKind::Note), std::pair(1UL, 2UL));
    EXPECT_THAT(taken.rowsOfKind, ElementsAre(3, 1, 2, 1, 3, 2));
    EXPECT_THAT(taken.census.notes, IsEmpty());
    EXPECT_EQ(taken.census.entries, 8U);
    EXPECT_TRUE(taken.census.hasKnownRoot);
}

TEST(CensusTest, IsCompleteUpToTheEntryAtWhichTheListingPauses) {
    const MadeArchive archive{{"a.xml", twoNotes}, {"b.xml", twoNotes}};
    Session session;
    ASSERT_EQ(session.open(archive.path()).status, OpenStatus::Done);
    const RowCallback pause = [](const Row&) { return RowAnswer::Pause; };

    EXPECT_EQ(session.census().entries, 0U);
    EXPECT_EQ(session.census().of(ItemKind::Note).items, 0U);
    session.list(pause);
    EXPECT_EQ(session.census().entries, 1U);
    EXPECT_EQ(session.census().of(ItemKind::Note).items, 2U);
    session.list(pause);
    EXPECT_EQ(session.census().entries, 2U);
    EXPECT_EQ(session.census().of(ItemKind::Note).items, 4U);
}

TEST(CensusTest, ExtractionsDuringAPauseCountNothing) {
    const MadeArchive archive{{"a.xml", twoNotes}, {"b.xml", twoNotes}};
    class Nowhere : public ByteSink {
        bool append(std::span<const std::byte>) override { return true; }
        bool overwrite(std::uint64_t, std::span<const std::byte>) override { return true; }
    } nowhere;
    Session session;
    ASSERT_EQ(session.open(archive.path()).status, OpenStatus::Done);
    const RowCallback pause = [](const Row&) { return RowAnswer::Pause; };

    EXPECT_EQ(session.extractAt(1, 1, nowhere).end, ExtractionEnd::Whole);
    session.list(pause);
    EXPECT_EQ(session.extract(1, nowhere).end, ExtractionEnd::Whole);
    while (!session.list(pause)) {
    }
    EXPECT_EQ(session.extract(3, nowhere).end, ExtractionEnd::Whole);

    EXPECT_EQ(session.census().of(ItemKind::Note).items, 4U);
    EXPECT_THAT(session.census().notes, IsEmpty());
}

TEST(CensusTest, ItemsAfterAForeignElementAreCountedThoughNotListed) {
    const Taken taken =
        take({{"n.xml", "<notes><note/><folder><note/></folder><note/><note/></notes>"}});

    EXPECT_EQ(itemsOf(taken, ItemKind::Note), 3U);
    EXPECT_EQ(rowsOf(taken, ItemKind::Note), 1U);
    const DocumentNote note = onlyNote(taken);
    EXPECT_EQ(note.finding, DocumentFinding::OtherNumber);
    EXPECT_TRUE(note.isMismatch());
    EXPECT_EQ(note.items, 3U);
    EXPECT_EQ(note.rows, 1U);
    EXPECT_EQ(note.text, "it has 3 items, of which 1 is listed; 1 other element is where "
                         "items are expected");
}

TEST(CensusTest, ItemThatHoldsAnElementOfItsOwnNameIsOneItem) {
    const Taken taken = take({{"n.xml", "<notes><note><a><note/></a></note><note/></notes>"}});

    EXPECT_EQ(itemsOf(taken, ItemKind::Note), 2U);
    EXPECT_EQ(rowsOf(taken, ItemKind::Note), 1U);
    EXPECT_EQ(onlyNote(taken).finding, DocumentFinding::OtherNumber);
}

TEST(CensusTest, ItemsOfAnotherKindAreNotItemsOfTheDocument) {
    const Taken taken = take({{"n.xml", "<notes><email/><task/></notes>"}});

    EXPECT_EQ(itemsOf(taken, ItemKind::Email) + itemsOf(taken, ItemKind::Task), 0U);
    const DocumentNote note = onlyNote(taken);
    EXPECT_EQ(note.finding, DocumentFinding::NoItems);
    EXPECT_EQ(note.text, "there is no note in it; 2 other elements are where items are expected");
}

TEST(CensusTest, DocumentsWithNamesThatTheListSkipsAreCounted) {
    const Taken taken =
        take({{"a.xml.d/m.xml", twoNotes}, {".xml", twoNotes}, {"b.xml", twoNotes}});

    EXPECT_EQ(itemsOf(taken, ItemKind::Note), 6U);
    EXPECT_EQ(rowsOf(taken, ItemKind::Note), 2U);
    ASSERT_THAT(taken.census.notes, SizeIs(2));
    for (const std::uint64_t entry : {0, 1}) {
        EXPECT_EQ(taken.census.notes[entry].entryIndex, entry);
        EXPECT_EQ(taken.census.notes[entry].finding, DocumentFinding::NotListed);
        EXPECT_EQ(taken.census.notes[entry].items, 2U);
        EXPECT_THAT(taken.census.notes[entry].text, HasSubstr("2 items, of which none is listed"));
    }
}

TEST(CensusTest, EntriesWithoutItemsAreNotedWithTheReason) {
    const Taken taken = take({
        {"Categories.xml", "<categories><category/></categories>"},
        {"html.xml", "<html><notes><note/></notes></html>"},
        {"none.xml", "<tasks elementCount=\"0\"></tasks>"},
        {"empty.xml", ""},
        {"text.xml", "Dear diary"},
        {"sub.xml/", ""},
        {"upper.XML", twoNotes},
    });

    using Finding = std::pair<std::uint64_t, DocumentFinding>;
    std::vector<Finding> findings;
    for (const DocumentNote& note : taken.census.notes) {
        findings.emplace_back(note.entryIndex, note.finding);
        EXPECT_FALSE(note.isMismatch());
        EXPECT_FALSE(note.text.empty());
    }
    EXPECT_THAT(findings, ElementsAre(Finding(0, DocumentFinding::Categories),
                                      Finding(1, DocumentFinding::OtherRoot),
                                      Finding(2, DocumentFinding::NoItems),
                                      Finding(3, DocumentFinding::Empty),
                                      Finding(4, DocumentFinding::Unreadable)));
    EXPECT_EQ(taken.census.notes[1].text, "its root element \"html\" is not of a known kind");
    EXPECT_EQ(taken.census.notes[2].text, "there is no task in it");
    ASSERT_THAT(taken.faults, SizeIs(2)) << "of the two that are not documents";
    EXPECT_EQ(taken.census.notes[4].text, taken.faults[1].text);
}

TEST(CensusTest, LongRootNameIsCutBetweenCharacters) {
    std::string name = "r";
    for (int i = 0; i < 100; ++i) {
        name += "\u00e9";
    }
    const Taken taken = take({{"a.xml", "<" + name + "/>"}});

    EXPECT_EQ(onlyNote(taken).text,
              "its root element \"" + name.substr(0, 79) + "\" is not of a known kind");
}

TEST(CensusTest, ForeignArchiveHasNoKnownRoot) {
    EXPECT_FALSE(take({{"a.xml", "<html/>"}, {"b.txt", twoNotes}}).census.hasKnownRoot);
    EXPECT_TRUE(take({{"a.xml", "<categories/>"}}).census.hasKnownRoot);
    EXPECT_TRUE(take({{"a.xml", "<groups/>"}}).census.hasKnownRoot);
}

// Wherever a document is truncated, the count is that of the items that have begun, and the module
// lists the same.
TEST(CensusTest, TruncatedDocumentCountsWhatHasBegun) {
    const std::string whole = "<notes elementCount=\"2\"><note a=\"1\"><b>text</b></note><note/>"
                              "</notes>";
    const std::size_t first = whole.find("<note ");
    const std::size_t firstEnd = whole.find('>', first) + 1;
    const std::size_t second = whole.find("<note/>") + 7;
    for (std::size_t length = 1; length < whole.size(); ++length) {
        SCOPED_TRACE(whole.substr(0, length));
        const Taken taken = take({{"n.xml", whole.substr(0, length)}});

        const std::uint64_t expected = (length >= firstEnd ? 1 : 0) + (length >= second ? 1 : 0);
        EXPECT_EQ(itemsOf(taken, ItemKind::Note), expected);
        EXPECT_EQ(rowsOf(taken, ItemKind::Note), expected);
        EXPECT_THAT(taken.faults, SizeIs(1));
        for (const DocumentNote& note : taken.census.notes) {
            EXPECT_EQ(note.finding, DocumentFinding::Unreadable);
        }
    }
}

TEST(CensusTest, ItemsBeyondTheFirstChunkOfABrokenDocumentAreCounted) {
    // The module stops at the foreign element; the host continues, across chunks of all sizes.
    std::string text = "<notes><note/><other/>";
    for (int i = 0; i < 5000; ++i) {
        text += "<note><OPFNoteCopyText>" + std::string(static_cast<std::size_t>(i % 300), 'x') +
                "</OPFNoteCopyText></note>";
    }
    const Taken taken = take({{"n.xml", text + "</tasks>"}});

    EXPECT_EQ(itemsOf(taken, ItemKind::Note), 5001U);
    EXPECT_EQ(rowsOf(taken, ItemKind::Note), 1U);
    ASSERT_THAT(taken.faults, SizeIs(1)) << "which the module never opened";
    EXPECT_EQ(taken.faults[0].kind, FaultKind::BrokenMarkup);
}

TEST(CensusTest, DocumentsInOtherEncodingsAndWithTypeDeclarationsAreCounted) {
    std::string wide = "\xFF\xFE";
    for (const char c : twoNotes) {
        wide += c;
        wide += '\0';
    }
    const Taken taken = take({
        {"a.xml", wide},
        {"b.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + twoNotes},
        {"c.xml", "<!DOCTYPE notes [<!ENTITY two \"<note/><note/>\">]><notes>&two;</notes>"},
    });

    EXPECT_EQ(itemsOf(taken, ItemKind::Note), 6U);
    EXPECT_THAT(taken.census.notes, IsEmpty());
}

TEST(CensusTest, AttachmentsAreThoseInAListOfAnItem) {
    const Taken taken = take({
        {"m.xml",
         "<emails><OPFMessageCopyAttachmentList><messageAttachment OPFAttachmentURL=\"0\"/>"
         "</OPFMessageCopyAttachmentList>"
         "</emails>"},
        {"n.xml", "<emails><email><x OPFAttachmentURL=\"0\"><y OPFAttachmentURL=\"0\"/></x>"
                  "<OPFMessageCopyAttachmentList>"
                  "<messageAttachment OPFAttachmentName=\"one\" OPFAttachmentURL=\"f/1\"/>"
                  "<messageAttachment><inner/><inner OPFAttachmentURL=\"f/2\"/></messageAttachment>"
                  "</OPFMessageCopyAttachmentList>"
                  "<z OPFAttachmentURL=\"0\"><w OPFAttachmentURL=\"0\"/></z></email>"
                  "<email><OPFMessageCopyAttachmentList/></email>"
                  "<email><OPFMessageCopyAttachmentList><m OPFAttachmentURL=\"\"/>"
                  "</OPFMessageCopyAttachmentList></email></emails>"},
        {"c.xml", "<appointments><appointment><OPFCalendarEventCopyAttachmentList>"
                  "<a OPFAttachmentURL=\"g&amp;\u00e9\"/></OPFCalendarEventCopyAttachmentList>"
                  "</appointment></appointments>"},
    });

    EXPECT_EQ(taken.census.of(ItemKind::Email).attachments, 3U);
    EXPECT_EQ(taken.census.of(ItemKind::Email).unnamedAttachments, 1U);
    EXPECT_EQ(taken.census.of(ItemKind::Appointment).attachments, 1U);
    EXPECT_THAT(taken.attachments,
                ElementsAre("email f/1 one", "email f/2 ", "email  ", "appointment g&\u00e9 "));
}

TEST(CensusTest, AttachmentsOfADocumentThatIsReadTwiceAreReportedOnce) {
    const auto mail = [](const std::string& url) {
        return "<email><OPFMessageCopyAttachmentList><m OPFAttachmentURL=\"" + url +
               "\"/></OPFMessageCopyAttachmentList></email>";
    };
    const Taken taken = take({{"m.xml", "<emails>" + mail("1") + "<stop/>" + mail("2") +
                                            std::string(100000, ' ') + mail("3") + "</emails>"}});

    EXPECT_EQ(taken.census.of(ItemKind::Email).attachments, 3U);
    EXPECT_THAT(taken.attachments, ElementsAre("email 1 ", "email 2 ", "email 3 "));
}

TEST(CensusTest, PausesChangeNoCount) {
    const MadeArchive made{{"a.xml", twoNotes}, {"b.xml", twoNotes}, {"c.xml", "<x/>"}};
    const Taken plain = take(made.path());
    const Taken paused = take(made.path(), RowAnswer::Pause);

    EXPECT_EQ(itemsOf(plain, ItemKind::Note), 4U);
    EXPECT_EQ(itemsOf(paused, ItemKind::Note), 4U);
    EXPECT_EQ(plain.census.entries, paused.census.entries);
    EXPECT_EQ(plain.census.notes.size(), paused.census.notes.size());
}

TEST(CensusTest, SampleHasTheItemsOfItsSources) {
    const char* source = std::getenv("OLMKIT_SOURCE_DIR");
    ASSERT_NE(source, nullptr);
    const Taken taken = take(std::string(source) + "/examples/sample.olm");

    EXPECT_THAT(taken.rowsOfKind, ElementsAre(4, 2, 2, 1, 2, 2));
    for (std::size_t place = 0; place < itemKindCount; ++place) {
        EXPECT_EQ(taken.census.kinds[place].items, taken.rowsOfKind[place]);
    }
    EXPECT_EQ(taken.census.of(ItemKind::Email).attachments, 2U);
    EXPECT_THAT(taken.attachments, ElementsAre(testing::EndsWith("_0000 tide-table.csv"),
                                               testing::EndsWith("_0001 buoy.svg")));
    EXPECT_EQ(onlyNote(taken).finding, DocumentFinding::Categories);
}

} // namespace
} // namespace olmhost
