#include "filter/writers/OLMMsgNoteWriter.h"

#include "filter/writers/OLMMsgNoteTags.h"
#include "tests/fakehost/Extraction.h"
#include "tests/fakehost/Matchers.h"
#include "tests/unit/storage/Thrown.h"
#include "tests/unit/writers/Sweeps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace fakehost;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

namespace {

constexpr const char* propertyStream = "__properties_version1.0";
constexpr size_t headerSize = 32;
constexpr size_t defaultCount = 12; // seven entries of every message and five of every note

const Bytes header(headerSize);
const Bytes noteGuid = hex("0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");

// What every note begins with: tag, flags, value.
const Bytes defaultEntries = hex("02 01 09 10  06 00 00 00  00 00 00 00 00 00 00 00"
                                 "1F 00 1A 00  06 00 00 00  1E 00 00 00 00 00 00 00"
                                 "0B 00 1F 0E  06 00 00 00  00 00 00 00 00 00 00 00"
                                 "03 00 F7 0F  06 00 00 00  00 00 00 00 00 00 00 00"
                                 "03 00 F4 0F  06 00 00 00  02 00 00 00 00 00 00 00"
                                 "03 00 0D 34  06 00 00 00  79 0E 04 00 00 00 00 00"
                                 "03 00 DE 3F  06 00 00 00  B0 04 00 00 00 00 00 00"
                                 "03 00 00 80  06 00 00 00  03 00 00 00 00 00 00 00"
                                 "03 00 01 80  06 00 00 00  A6 00 00 00 00 00 00 00"
                                 "03 00 02 80  06 00 00 00  C8 00 00 00 00 00 00 00"
                                 "03 00 03 80  06 00 00 00  50 00 00 00 00 00 00 00"
                                 "03 00 04 80  06 00 00 00  50 00 00 00 00 00 00 00");

// The five defaults as named properties: named id, kind word, number.
const Bytes defaultNames = hex("00 8B 00 00  06 00  00 00"
                               "03 8B 00 00  06 00  01 00"
                               "02 8B 00 00  06 00  02 00"
                               "04 8B 00 00  06 00  03 00"
                               "05 8B 00 00  06 00  04 00");

// The streams of a note whose bytes are the same in every note.
void expectDefaultStreams(const StoredMessage& message) {
    EXPECT_EQ(message.classId(), hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(message.stream("__substg1.0_10090102"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_001A001F"), utf16(u"IPM.StickyNote"));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00020102"), noteGuid);
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_10020102"), defaultNames.part(0, 8));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_10010102"), defaultNames.part(8, 8));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_10000102"), defaultNames.part(16, 8));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_101D0102"), defaultNames.part(24, 8));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_101E0102"), defaultNames.part(32, 8));
}

// The entries behind those that every note begins with.
std::vector<PropertyEntry> ownEntries(const StoredMessage& message) {
    std::vector<PropertyEntry> entries = message.entries();
    EXPECT_GE(entries.size(), defaultCount);
    entries.erase(entries.begin(),
                  entries.begin() + static_cast<long>(std::min(entries.size(), defaultCount)));
    return entries;
}

PropertyEntry entry(uint32_t tag, uint64_t value) {
    return {tag, 6, value};
}

// Every element that a note has, in the order of a real archive.
ItemDocument fullNote() {
    return note()
        .open("OPFNoteCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Family")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .element("OPFNoteCopyCreationDate", "1970-01-01T00:00:00Z")
        .element("OPFNoteCopyModDate", "2018-06-21T00:39:08")
        .element("OPFNoteCopyNonHTMLText", "High water at noon\n \n")
        .element("OPFNoteCopyText", "<html><body>High water</body></html>")
        .element("OPFNoteCopyTitle", "Tide table");
}

// The writer with its members open, for what no message shows.
class OpenNoteWriter : public OLMMsgNoteWriter {
public:
    using OLMMsgNoteWriter::expectedProps;
    using OLMMsgNoteWriter::OLMMsgNoteWriter;
    using OLMMsgNoteWriter::properties;
    using OLMMsgNoteWriter::rootTag;
};

// A writer of a note on a reader that stands ahead of the note.
class OLMMsgNoteWriterObjectTest : public testing::Test {
protected:
    OLMMsgNoteWriterObjectTest() {
        host.entry("Local/Notes/Notes.xml", note());
        request.output = host.newOutput();
        parser.emplace(host.openArchive(), 0);
        OLMXMLTag root;
        EXPECT_EQ(parser->nextTag(root), 1);
        writer.emplace(&request);
    }

    FakeHost host;
    SODOSPECIALARC request{};
    std::optional<OLMXMLParser> parser;
    std::optional<OpenNoteWriter> writer;
};

} // namespace

// --- The object.

TEST_F(OLMMsgNoteWriterObjectTest, BeginningTakesTheRootTagAndCountsTheTable) {
    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);

    EXPECT_EQ(writer->rootTag, 0u);
    EXPECT_EQ(writer->expectedProps, 7u);
    EXPECT_EQ(writer->properties.size(), static_cast<int>(defaultCount));
}

TEST_F(OLMMsgNoteWriterObjectTest, TableIsAddedInByteOrder) {
    writer->initilizeWriter(*parser);

    EXPECT_THAT(
        host.tagMaps().back(),
        ElementsAre(Pair("OPFNoteCopyCategoryList", 1), Pair("OPFNoteCopyCreationDate", 0x30070040),
                    Pair("OPFNoteCopyModDate", 0x30080040),
                    Pair("OPFNoteCopyNonHTMLText", 0x1000001F), Pair("OPFNoteCopyText", 0x10130102),
                    Pair("OPFNoteCopyTitle", 0x0037001F), Pair("note", 0)));
}

TEST_F(OLMMsgNoteWriterObjectTest, RefusedTableThrowsAheadOfAnyStorage) {
    for (const int32_t status : {-3, 3}) {
        host.failCall(CallKind::AddTagMap, 0, status);

        EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), 0xFFFFFFFEu);
        EXPECT_FALSE(host.message().hasRoot());
    }
}

TEST_F(OLMMsgNoteWriterObjectTest, MissingRootStorageDoesNotEndTheBeginning) {
    host.failCall(CallKind::CreateRoot, 0);

    EXPECT_EQ(writer->initilizeWriter(*parser), 0u);
    EXPECT_EQ(writer->expectedProps, 7u);
}

// --- Whole messages.

TEST(OLMMsgNoteWriterTest, EmptyNoteHasItsDefaultsAndNothingElse) {
    const StoredMessage message = writeItem(note());

    EXPECT_THAT(
        message.paths(),
        ElementsAre(
            "__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
            "__nameid_version1.0/__substg1.0_00030102", "__nameid_version1.0/__substg1.0_00040102",
            "__substg1.0_10090102", "__substg1.0_001A001F", "__properties_version1.0",
            "__nameid_version1.0/__substg1.0_10020102", "__nameid_version1.0/__substg1.0_10010102",
            "__nameid_version1.0/__substg1.0_10000102", "__nameid_version1.0/__substg1.0_101D0102",
            "__nameid_version1.0/__substg1.0_101E0102"));
    EXPECT_EQ(message.stream(propertyStream), header + defaultEntries);
    expectDefaultStreams(message);
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00030102"), defaultNames);
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00040102"), Bytes());
}

TEST(OLMMsgNoteWriterTest, FullNoteIsWrittenInDocumentOrder) {
    const StoredMessage message = writeItem(fullNote());

    EXPECT_THAT(
        message.paths(),
        ElementsAre(
            "__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
            "__nameid_version1.0/__substg1.0_00030102", "__nameid_version1.0/__substg1.0_00040102",
            "__substg1.0_10090102", "__substg1.0_001A001F", "__substg1.0_8005101F",
            "__substg1.0_8005101F-00000000", "__substg1.0_8005101F-00000001",
            "__substg1.0_1000001F", "__substg1.0_0037001F", "__properties_version1.0",
            "__nameid_version1.0/__substg1.0_10020102", "__nameid_version1.0/__substg1.0_10010102",
            "__nameid_version1.0/__substg1.0_10000102", "__nameid_version1.0/__substg1.0_101D0102",
            "__nameid_version1.0/__substg1.0_101E0102",
            "__nameid_version1.0/__substg1.0_10150102"));
    // The times are 116444735990000000 and 131740151470000000.
    EXPECT_EQ(message.stream(propertyStream),
              header + defaultEntries +
                  hex("1F 10 05 80  06 00 00 00  08 00 00 00 00 00 00 00"
                      "40 00 07 30  06 00 00 00  80 E9 A5 D4 DE B1 9D 01"
                      "40 00 08 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                      "1F 00 00 10  06 00 00 00  2C 00 00 00 00 00 00 00"
                      "1F 00 37 00  06 00 00 00  16 00 00 00 00 00 00 00"));
    expectDefaultStreams(message);
    EXPECT_EQ(message.stream("__substg1.0_8005101F"), hex("0E 00 00 00  08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8005101F-00000000"), utf16(u"Family") + hex("00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8005101F-00000001"), utf16(u"Sea") + hex("00 00"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"High water at noon\n \n"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Tide table"));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00030102"),
              defaultNames + hex("00 00 00 00  05 00  05 00"));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00040102"),
              hex("10 00 00 00") + utf16(u"Keywords"));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_10150102"),
              hex("3B 4D DA 2E  05 00  05 00"));
}

// --- Single elements.

TEST(OLMMsgNoteWriterTest, RichTextIsDroppedAndNotCounted) {
    const Outcome outcome = extractItem(note().element("OPFNoteCopyText", "<b>rich</b>"));

    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
    EXPECT_FALSE(outcome.message.has("__substg1.0_10130102"));
    EXPECT_THAT(ownEntries(outcome.message), SizeIs(0));
}

TEST(OLMMsgNoteWriterTest, CategoryListAddsNoPropertySetAndTheNextNumber) {
    const StoredMessage message = writeItem(note()
                                                .open("OPFNoteCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", "Family"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8005101F, 4)));
    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00020102"), noteGuid);
}

TEST(OLMMsgNoteWriterTest, NoteWithoutCategoriesHasAnEmptyStringStream) {
    const StoredMessage message = writeItem(note().element("OPFNoteCopyTitle", "Tide table"));

    EXPECT_EQ(message.stream("__nameid_version1.0/__substg1.0_00040102"), Bytes());
    EXPECT_FALSE(message.has("__nameid_version1.0/__substg1.0_10150102"));
}

TEST(OLMMsgNoteWriterTest, UnknownElementsAreWalkedThrough) {
    const StoredMessage message = writeItem(note()
                                                .open("OPFNoteCopyUUID")
                                                .element("OPFNoteCopyTitle", "inside")
                                                .close()
                                                .element("stranger", "text"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, 14)));
}

TEST(OLMMsgNoteWriterTest, ProgressCountsTheElementsOfTheTable) {
    EXPECT_THAT(extractItem(fullNote()).progress,
                ElementsAre(14, 28, 28, 42, 42, 57, 57, 57, 57, 71, 71, 100));
}

TEST(OLMMsgNoteWriterTest, NoteEndsWithItsSeventhElementWhateverFollows) {
    ItemDocument repeated = note();
    for (int count = 0; count < 7; ++count) {
        repeated.element("OPFNoteCopyTitle", "Tide table");
    }
    repeated.element("OPFNoteCopyNonHTMLText", "unread");

    const Outcome outcome = extractItem(repeated);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.progress.back(), 100);
    EXPECT_THAT(outcome.progress, SizeIs(13));
    EXPECT_THAT(ownEntries(outcome.message),
                testing::AllOf(SizeIs(7), Each(entry(0x0037001F, 22))));
    EXPECT_FALSE(outcome.message.has("__substg1.0_1000001F"));
}

TEST(OLMMsgNoteWriterTest, SecondNoteOfADocumentIsNotTouched) {
    const StoredMessage message = writeItem(note()
                                                .element("OPFNoteCopyTitle", "first")
                                                .close()
                                                .open("note")
                                                .element("OPFNoteCopyTitle", "second"));

    EXPECT_THAT(message, HasText(0x0037001F, u"first"));
}

TEST(OLMMsgNoteWriterTest, CancelledNoteHasNoPropertyStream) {
    ItemRun run;
    run.answer = [](int32_t value) { return value == 28 ? 1 : 0; };

    const Outcome outcome = extractItem(fullNote(), run);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_THAT(outcome.progress, ElementsAre(14, 28));
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_TRUE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.handlesLeftOpen, 0);
}

// --- Text of every length around the size of a chunk.

class OLMMsgNoteWriterLengthTest : public testing::TestWithParam<size_t> {};

TEST_P(OLMMsgNoteWriterLengthTest, TitleAndBodyAreWhole) {
    const std::u16string text = patternText(GetParam());

    const StoredMessage message =
        writeItem(note().element("OPFNoteCopyNonHTMLText", text).element("OPFNoteCopyTitle", text));

    const uint64_t size = 2 * GetParam() + 2;
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x1000001F, size), entry(0x0037001F, size)));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(text));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(text));
}

TEST_P(OLMMsgNoteWriterLengthTest, CategoryIsWhole) {
    const std::u16string text = patternText(GetParam());

    const StoredMessage message = writeItem(note()
                                                .open("OPFNoteCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", text));

    EXPECT_EQ(message.stream("__substg1.0_8005101F"),
              le32(static_cast<uint32_t>(2 * GetParam() + 2)));
    EXPECT_EQ(message.stream("__substg1.0_8005101F-00000000"), utf16(text) + hex("00 00"));
}

TEST_P(OLMMsgNoteWriterLengthTest, TextThatIsNoDateIsZero) {
    const StoredMessage message =
        writeItem(note().element("OPFNoteCopyModDate", std::u16string(GetParam(), u'x')));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x30080040, 0)));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgNoteWriterLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000));

// --- What the host and the document may do.

TEST(OLMMsgNoteWriterTest, NoHostFailureEscapesOrLeaks) {
    expectNoHostFailureEscapes(fullNote());
}

TEST(OLMMsgNoteWriterTest, MissingRootStorageFailsTheRequest) {
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateRoot, 0); };

    const Outcome outcome = extractItem(fullNote(), run);

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_FALSE(outcome.message.hasRoot());
}

TEST(OLMMsgNoteWriterTest, NoShortWriteEscapesOrLeaks) {
    expectNoShortWriteEscapes(fullNote());
}

TEST(OLMMsgNoteWriterTest, NoteIsFinishedWhereverTheDocumentBreaks) {
    expectItemIsFinishedWhereverTheDocumentBreaks(fullNote(), {}, [](const StoredMessage& message) {
        EXPECT_EQ(message.stream(propertyStream).part(0, headerSize + 16 * defaultCount),
                  header + defaultEntries);
    });
}
