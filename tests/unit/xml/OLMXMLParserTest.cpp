#include "filter/xml/OLMXMLParser.h"

#include <cstring>
#include <memory>
#include <optional>

#include <gmock/gmock.h>

#include "filter/core/Exception.h"
#include "tests/fakehost/FakeHost.h"
#include "tests/fakehost/Text.h"
#include "tests/unit/xml/UnitsOf.h"

namespace {

using fakehost::CallKind;
using fakehost::document;
using fakehost::FakeHost;
using fakehost::ItemDocument;
using fakehost::note;
using fakehost::patternText;
using fakehost::ScriptedAttribute;
using fakehost::ScriptedRead;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr UTXML_STRVALPAIR noteTags[] = {{50, "a"}, {51, "b"}, {6, "note"}};
constexpr uint32_t countIt = UTXML_COUNT_IT;

class OLMXMLParserTest : public testing::Test {
protected:
    // Returns a parser on this document, the only entry of the archive.
    OLMXMLParser& parse(const ItemDocument& document, const std::string& name = "a.xml") {
        host.entry(name, document);
        return open(0);
    }

    OLMXMLParser& open(unsigned long index) {
        if (archive == nullptr) {
            archive = host.openArchive();
        }
        parser = std::make_unique<OLMXMLParser>(archive, index);
        parser->addTags(noteTags, std::size(noteTags));
        return *parser;
    }

    // Returns the exception that making a parser on the first entry throws, if any.
    std::optional<qor::Exception> failure() {
        archive = host.openArchive();
        try {
            const OLMXMLParser unwanted(archive, 0);
        } catch (const qor::Exception& thrown) {
            return thrown;
        }
        return std::nullopt;
    }

    FakeHost host;
    ArchiveDirectory* archive = nullptr;
    std::unique_ptr<OLMXMLParser> parser;
    OLMXMLTag tag;
};

// --- Construction.

struct NameCase {
    const char* title;
    const char* entry;
    const char16_t* folder;
    const char16_t* fileName;
};

class OLMXMLParserNameTest : public OLMXMLParserTest,
                             public testing::WithParamInterface<NameCase> {};

TEST_P(OLMXMLParserNameTest, EntryNameIsSplitAfterItsLastSlash) {
    const OLMXMLParser& named = parse(note(), GetParam().entry);

    EXPECT_EQ(unitsOf(named.folder), GetParam().folder);
    EXPECT_EQ(unitsOf(named.fileName), GetParam().fileName);
}

INSTANTIATE_TEST_SUITE_P(
    Names, OLMXMLParserNameTest,
    testing::Values(NameCase{"InAFolder", "Local/Inbox/m.xml", u"Local/Inbox/", u"m.xml"},
                    NameCase{"NoFolder", "m.xml", u"", u"m.xml"},
                    NameCase{"OnlyAFolder", "a/", u"a/", u""},
                    NameCase{"OnlyASlash", "/", u"/", u""},
                    NameCase{"LeadingSlash", "/m.xml", u"/", u"m.xml"},
                    NameCase{"EmptyName", "", u"", u""},
                    NameCase{"NotAscii", "A\xCC\x88/\xE2\x82\xAC.xml", u"A\u0308/", u"\u20AC.xml"}),
    [](const auto& row) { return row.param.title; });

TEST_F(OLMXMLParserTest, ConstructionMakesTheseCalls) {
    host.entry("a.xml", note()).entry("b.xml", note());
    archive = host.openArchive();
    host.forgetCalls();

    const OLMXMLParser second(archive, 1);

    EXPECT_THAT(host.callTexts(),
                ElementsAre("open(40, 1)", "UTXMLInit(entry b.xml)", "UTXMLSetOption(4, 1)",
                            "UTXMLAddTagMap(\"\", 0, 0, 6 rows)"));
    EXPECT_EQ(second.entryIndex, 1U);
}

TEST_F(OLMXMLParserTest, RootMapHasTheSixKindsOfDocuments) {
    parse(note());

    ASSERT_FALSE(host.tagMaps().empty());
    EXPECT_THAT(host.tagMaps().front(),
                ElementsAre(Pair("appointments", 0), Pair("contacts", 1), Pair("emails", 2),
                            Pair("groups", 5), Pair("notes", 3), Pair("tasks", 4)));
}

TEST_F(OLMXMLParserTest, OpenRequestIsZeroExceptForItsMembers) {
    host.entry("a.xml", note()).entry("b.xml", note());
    open(1);

    MemberOpenRequest expected;
    std::memset(&expected, 0, sizeof expected);
    expected.archive = archive;
    expected.entryIndex = 1;
    expected.always1 = 1;
    ASSERT_THAT(host.memberRequests(), SizeIs(1));
    EXPECT_EQ(std::memcmp(&host.memberRequests()[0], &expected, sizeof expected), 0);
}

TEST_F(OLMXMLParserTest, DestructorEndsReaderThenStream) {
    parse(note());
    host.forgetCalls();

    parser.reset();

    EXPECT_THAT(host.callTexts(), ElementsAre("UTXMLDeInit()", "close(entry a.xml)"));
    EXPECT_THAT(host.openHandleTexts(), ElementsAre("archive"));
    EXPECT_EQ(host.openReaders(), 0);
}

TEST_F(OLMXMLParserTest, EntryThatCantBeOpenedThrowsMinus4) {
    host.brokenEntry("a.xml", -7);

    const auto thrown = failure();

    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->code, 0xFFFFFFFCU);
    EXPECT_EQ(thrown->message(), nullptr);
    EXPECT_EQ(host.openHandles(), 1);
}

TEST_F(OLMXMLParserTest, NullHandleIsAFailureWhateverOpenReturns) {
    host.brokenEntry("a.xml", 0);

    const auto thrown = failure();

    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->code, 0xFFFFFFFCU);
}

TEST_F(OLMXMLParserTest, EntryPastTheDirectoryThrowsMinus4) {
    host.entry("a.xml", note());
    archive = host.openArchive();

    try {
        const OLMXMLParser unwanted(archive, 1);
        FAIL() << "a parser on an entry that does not exist";
    } catch (const qor::Exception& thrown) {
        EXPECT_EQ(thrown.code, 0xFFFFFFFCU);
    }
}

class OLMXMLParserStatusTest : public OLMXMLParserTest, public testing::WithParamInterface<int> {};

TEST_P(OLMXMLParserStatusTest, FailedInitThrowsItsStatusAndLeavesTheStreamOpen) {
    host.entry("a.xml", note());
    host.failCall(CallKind::ReaderInit, 0, GetParam());

    const auto thrown = failure();

    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->code, static_cast<unsigned int>(GetParam()));
    EXPECT_EQ(thrown->message(), nullptr);
    EXPECT_THAT(host.openHandleTexts(), ElementsAre("archive", "entry a.xml"));
    EXPECT_EQ(host.countOf(CallKind::SetOption), 0);
}

TEST_P(OLMXMLParserStatusTest, FailedRootMapThrowsItsStatusAndLeavesTheStreamOpen) {
    host.entry("a.xml", note());
    host.failCall(CallKind::AddTagMap, 0, GetParam());

    const auto thrown = failure();

    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->code, static_cast<unsigned int>(GetParam()));
    EXPECT_EQ(thrown->message(), nullptr);
    EXPECT_THAT(host.openHandleTexts(), ElementsAre("archive", "entry a.xml"));
}

INSTANTIATE_TEST_SUITE_P(Statuses, OLMXMLParserStatusTest,
                         testing::Values(-1, -9, 5, 32767, -32768), [](const auto& row) {
                             return std::string(row.param < 0 ? "Minus" : "Plus")
                                 .append(std::to_string(std::abs(row.param)));
                         });

TEST_F(OLMXMLParserTest, FailedOptionIsIgnored) {
    host.failCall(CallKind::SetOption, 0, -1);

    EXPECT_EQ(parse(note()).nextTag(tag), 1);
}

TEST_F(OLMXMLParserTest, AddTagsReturnsTheReadersStatus) {
    parse(note());
    for (const int status : {3, -3}) {
        host.failCall(CallKind::AddTagMap, 0, status);
        EXPECT_EQ(parser->addTags(noteTags, 3), status);
    }
    EXPECT_EQ(parser->addTags(noteTags, 3), 0);
}

TEST_F(OLMXMLParserTest, OpenXmlFileReturnsAStreamOfItsOwn) {
    host.entry("a.xml", note(), fakehost::bytesOf("xyz"));
    archive = host.openArchive();

    HostStream* stream = OLMXMLParser::openXMLFile(archive, 0);

    ASSERT_NE(stream, nullptr);
    char text[4] = {};
    uint32_t count = 0;
    EXPECT_EQ(stream->read(stream, text, 3, &count), 0);
    EXPECT_STREQ(text, "xyz");
    stream->close(stream);
    EXPECT_EQ(OLMXMLParser::openXMLFile(archive, 7), nullptr);
}

// --- Tags.

TEST_F(OLMXMLParserTest, NewTagIsZeroed) {
    EXPECT_EQ(tag.id(), 0U);
    EXPECT_EQ(tag.flags(), 0U);
    EXPECT_EQ(tag.attributes.size(), 0);
}

TEST_F(OLMXMLParserTest, TagsComeWithIdAndClosingBit) {
    OLMXMLParser& reader = parse(note().element("a").element("unknown"));
    std::vector<std::pair<unsigned int, bool>> tags;

    while (reader.nextTag(tag) != 0) {
        tags.emplace_back(tag.id(), (tag.flags() & 0x1000) != 0);
    }

    EXPECT_THAT(tags, ElementsAre(Pair(3, false), Pair(6, false), Pair(50, false), Pair(50, true),
                                  Pair(0xFFFFFFFF, false), Pair(0xFFFFFFFF, true), Pair(6, true),
                                  Pair(3, true)));
}

TEST_F(OLMXMLParserTest, UnreadTextIsSkippedByTheNextTag) {
    OLMXMLParser& reader = parse(document("notes").element("a", "text").element("b"));
    reader.nextTag(tag);
    reader.nextTag(tag);
    host.forgetCalls();

    EXPECT_EQ(reader.nextTag(tag), 1);

    EXPECT_EQ(tag.id(), 50U);
    EXPECT_TRUE(tag.flags() & 0x1000);
    EXPECT_THAT(host.callTexts(), ElementsAre("UTXMLReadNextTag()", "UTXMLSkipContent()",
                                              "UTXMLReadNextTag()", "UTXMLGetNextAttribute()"));
}

TEST_F(OLMXMLParserTest, PendingContentIsSkippedOnlyOnce) {
    OLMXMLParser& reader = parse(document("notes").element("a", "text"));
    reader.nextTag(tag);
    reader.nextTag(tag);
    host.forgetCalls();
    host.failCall(CallKind::ReadNextTag, 1, UTXML_CONTENT_PENDING);

    EXPECT_EQ(reader.nextTag(tag), 1);

    EXPECT_EQ(host.countOf(CallKind::ReadNextTag), 2);
    EXPECT_EQ(host.countOf(CallKind::SkipContent), 1);
    EXPECT_EQ(tag.id(), 50U);
    EXPECT_FALSE(tag.flags() & 0x1000);
}

TEST_F(OLMXMLParserTest, FailedSkipOfContentIsIgnored) {
    OLMXMLParser& reader = parse(document("notes").element("a", "text"));
    reader.nextTag(tag);
    reader.nextTag(tag);
    host.failCall(CallKind::SkipContent, 0, -1);

    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_TRUE(tag.flags() & 0x1000);
}

TEST_F(OLMXMLParserTest, NegativeStatusReturns0AndKeepsTheRecord) {
    OLMXMLParser& reader = parse(document("notes").attribute("x", "y").breakOff());
    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_EQ(tag.attributes.size(), 1);

    EXPECT_EQ(reader.nextTag(tag), 0);
    EXPECT_EQ(tag.id(), 3U);
    EXPECT_EQ(tag.attributes.size(), 0);
    EXPECT_EQ(reader.nextTag(tag), 0);
}

TEST_F(OLMXMLParserTest, FailureAfterPendingContentReturns0) {
    OLMXMLParser& reader = parse(document("notes").text("text").breakOff());
    reader.nextTag(tag);

    EXPECT_EQ(reader.nextTag(tag), 0);
    EXPECT_EQ(tag.id(), 3U);
}

TEST_F(OLMXMLParserTest, PositiveStatusThatIsNotPendingIsATag) {
    OLMXMLParser& reader = parse(note());
    host.failCall(CallKind::ReadNextTag, 0, 7);

    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_EQ(host.countOf(CallKind::ReadNextTag), 1);
}

TEST_F(OLMXMLParserTest, AttributesComeInTheOrderOfTheDocument) {
    OLMXMLParser& reader = parse(document("notes").attribute("one", "1").attribute("two", "zwei"));

    reader.nextTag(tag);

    ASSERT_EQ(tag.attributes.size(), 2);
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->name), u"one");
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->value), u"1");
    EXPECT_EQ(unitsOf(tag.attributes.get(1)->name), u"two");
    EXPECT_EQ(unitsOf(tag.attributes.get(1)->value), u"zwei");
}

TEST_F(OLMXMLParserTest, TagWithoutAttributesKeepsTheListsStore) {
    OLMXMLParser& reader = parse(document("notes").attribute("one", "1").element("a"));
    reader.nextTag(tag);
    const auto* store = tag.attributes.store();
    ASSERT_NE(store, nullptr);

    EXPECT_EQ(reader.nextTag(tag), 1);

    EXPECT_EQ(tag.attributes.size(), 0);
    EXPECT_EQ(tag.attributes.store(), store);
}

TEST_F(OLMXMLParserTest, AttributesOfEarlierTagsLeaveNoTrace) {
    ItemDocument source = document("notes");
    source.attribute("aLongNameOfAnAttribute", patternText(5000)).attribute("second", "x");
    source.open("a").attribute("n", "").open("b").attribute("", "v");
    OLMXMLParser& reader = parse(source);
    reader.nextTag(tag);
    ASSERT_EQ(tag.attributes.get(0)->value.length(), 5000);

    reader.nextTag(tag);
    ASSERT_EQ(tag.attributes.size(), 1);
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->name), u"n");
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->value), u"");
    reader.nextTag(tag);
    ASSERT_EQ(tag.attributes.size(), 1);
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->name), u"");
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->value), u"v");
}

TEST_F(OLMXMLParserTest, HundredsOfAttributesAreAllKept) {
    ItemDocument source = document("notes");
    for (int i = 0; i < 300; ++i) {
        source.attribute(std::string("a").append(std::to_string(i)), std::to_string(i * 7));
    }
    OLMXMLParser& reader = parse(source.element("a"));

    reader.nextTag(tag);

    ASSERT_EQ(tag.attributes.size(), 300);
    EXPECT_EQ(unitsOf(tag.attributes.get(299)->name), u"a299");
    EXPECT_EQ(unitsOf(tag.attributes.get(299)->value), u"2093");
    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_EQ(tag.attributes.size(), 0);
}

TEST_F(OLMXMLParserTest, ClearAttributesEmptiesTheListAndKeepsItsStore) {
    OLMXMLParser& reader = parse(document("notes").attribute("one", "1"));
    reader.nextTag(tag);
    const auto* store = tag.attributes.store();

    tag.clearAttributes();

    EXPECT_EQ(tag.attributes.size(), 0);
    EXPECT_EQ(tag.attributes.store(), store);
}

TEST_F(OLMXMLParserTest, TagOutlivesItsParser) {
    parse(document("notes").attribute("one", "1")).nextTag(tag);

    parser.reset();

    ASSERT_EQ(tag.attributes.size(), 1);
    EXPECT_EQ(unitsOf(tag.attributes.get(0)->value), u"1");
}

struct AttributeCase {
    const char* title;
    ScriptedAttribute scripted;
    std::u16string name;
    std::u16string value;
};

class OLMXMLParserAttributeTest : public OLMXMLParserTest,
                                  public testing::WithParamInterface<AttributeCase> {};

TEST_P(OLMXMLParserAttributeTest, EndsAtItsFirst0Unit) {
    // Nothing of the previous attribute must be left.
    OLMXMLParser& reader =
        parse(document("notes").attribute("before", "before").attribute(GetParam().scripted));

    reader.nextTag(tag);

    ASSERT_EQ(tag.attributes.size(), 2);
    EXPECT_EQ(unitsOf(tag.attributes.get(1)->name), GetParam().name);
    EXPECT_EQ(unitsOf(tag.attributes.get(1)->value), GetParam().value);
}

ScriptedAttribute scripted(std::u16string name, std::u16string value) {
    ScriptedAttribute attribute;
    attribute.name = std::move(name);
    attribute.value = std::move(value);
    return attribute;
}

ScriptedAttribute terminated(std::u16string name, std::u16string value) {
    ScriptedAttribute attribute = scripted(std::move(name), std::move(value));
    attribute.nameIsTerminated = attribute.valueIsTerminated = true;
    return attribute;
}

ScriptedAttribute nullTexts(bool isTerminated) {
    ScriptedAttribute attribute = scripted(u"abc", u"defg");
    attribute.nameIsTerminated = attribute.valueIsTerminated = isTerminated;
    attribute.nameIsNull = attribute.valueIsNull = true;
    return attribute;
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, OLMXMLParserAttributeTest,
    testing::Values(AttributeCase{"WithLengths", scripted(u"n", u"value"), u"n", u"value"},
                    AttributeCase{"Terminated", terminated(u"n", u"value"), u"n", u"value"},
                    AttributeCase{"TerminatedAndEmpty", terminated(u"", u""), u"", u""},
                    AttributeCase{"Empty", scripted(u"", u""), u"", u""},
                    AttributeCase{"NullWithLengths", nullTexts(false), u"", u""},
                    AttributeCase{"NullWithoutLengths", nullTexts(true), u"", u""},
                    AttributeCase{"ZeroInside", scripted({u'n', 0, u'm'}, {u'v', 0, u'w'}), u"n",
                                  u"v"},
                    AttributeCase{"ZeroFirst", scripted({0, u'm'}, {0}), u"", u""}),
    [](const auto& row) { return row.param.title; });

// --- Content.

class OLMXMLParserContentTest : public OLMXMLParserTest {
protected:
    // Reads up to the root's opening tag and sets `text` to "before".
    void readTo(const ItemDocument& source) {
        parse(source).nextTag(tag);
        text = qor::WString("before");
        host.forgetCalls();
    }

    void readReads(std::vector<ScriptedRead> reads) {
        readTo(document("notes").reads(std::move(reads)));
    }

    qor::WString text;
};

TEST_F(OLMXMLParserContentTest, EmptyElementReturns0AndKeepsTheEarlierText) {
    readTo(document("notes"));
    for (const int endStatus : {0, 1, -1}) {
        host.setEndOfTextStatus(static_cast<int16_t>(endStatus));
        EXPECT_EQ(parser->content(text), 0);
        EXPECT_EQ(unitsOf(text), u"before");
    }
}

TEST_F(OLMXMLParserContentTest, ClosingTagReturns0AndKeepsTheEarlierText) {
    readTo(document("notes").element("a", "abc"));
    parser->nextTag(tag);
    parser->content(text);
    parser->nextTag(tag);

    EXPECT_EQ(parser->content(text), 0);
    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST_F(OLMXMLParserContentTest, ThreeThousandUnitsTakeThreeReads) {
    readTo(document("notes").text(patternText(3000)));

    EXPECT_EQ(parser->content(text), 1);

    EXPECT_EQ(unitsOf(text), patternText(3000));
    EXPECT_THAT(host.callTexts(),
                ElementsAre("UTXMLReadContent(1, 0x400)", "UTXMLReadContent(1, 0x400)",
                            "UTXMLReadContent(1, 0x400)"));
}

class OLMXMLParserLengthTest : public OLMXMLParserContentTest,
                               public testing::WithParamInterface<int> {};

TEST_P(OLMXMLParserLengthTest, TextIsReadWholeInChunksOf1024) {
    const auto length = static_cast<size_t>(GetParam());
    for (const int endStatus : {0, 1}) {
        FakeHost own;
        own.setEndOfTextStatus(static_cast<int16_t>(endStatus));
        own.entry("a.xml", document("notes").text(patternText(length)));
        OLMXMLParser reader(own.openArchive(), 0);
        reader.nextTag(tag);
        text = qor::WString("before");

        EXPECT_EQ(reader.content(text), length == 0 ? 0 : 1);

        EXPECT_TRUE(unitsOf(text) == (length == 0 ? u"before" : patternText(length)));
        EXPECT_EQ(own.countOf(CallKind::ReadContent), GetParam() / 1024 + 1);
        EXPECT_EQ(reader.nextTag(tag), 1);
        EXPECT_EQ(own.countOf(CallKind::SkipContent), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Units, OLMXMLParserLengthTest,
                         testing::Values(0, 1, 2, 1023, 1024, 1025, 2047, 2048, 2049, 3000, 65535,
                                         65536, 65537, 1'000'000),
                         testing::PrintToStringParamName());

TEST_F(OLMXMLParserContentTest, ZeroUnitInsideTheFirstChunkEndsIt) {
    readTo(document("notes").text(std::u16string({u'a', 0, u'b'})));

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"a");
}

TEST_F(OLMXMLParserContentTest, TextThatBeginsWithA0UnitIsEmptyAndCountsAsRead) {
    readTo(document("notes").text(std::u16string({0, u'b'})));

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"");
}

TEST_F(OLMXMLParserContentTest, ChunksAfterA0UnitInTheFirstAreAppended) {
    std::u16string source = patternText(1030);
    source[10] = 0;
    readTo(document("notes").text(source));

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), source.substr(0, 10) + source.substr(1024));
}

TEST_F(OLMXMLParserContentTest, ZeroUnitInALaterChunkStays) {
    std::u16string source = patternText(1030);
    source[1026] = 0;
    readTo(document("notes").text(source));

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), source);
}

TEST_F(OLMXMLParserContentTest, TerminatedTextIsCounted) {
    readReads({{0, countIt, {u'a', u'b', 0, u'c'}}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"ab");
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 1);
}

TEST_F(OLMXMLParserContentTest, TerminatedEmptyTextEmptiesTheTextAndCountsAsRead) {
    readReads({{0, countIt, {0}}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"");
}

TEST_F(OLMXMLParserContentTest, UnterminatedTextThatFillsTheBufferEndsWithIt) {
    readReads({{0, countIt, patternText(1024)}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024));
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 1);
}

class OLMXMLParserClearedBufferTest : public OLMXMLParserContentTest,
                                      public testing::WithParamInterface<size_t> {};

// A text to be counted that comes without a 0 unit ends where the buffer is still clear, whatever
// an earlier text left in the memory of the buffer.
TEST_P(OLMXMLParserClearedBufferTest, EndsATextThatIsToBeCounted) {
    const std::u16string source = patternText(GetParam());
    readTo(document("notes")
               .open("a")
               .reads({{0, 1024, patternText(1024)}, {0, 0, {}}})
               .close()
               .open("b")
               .reads({{0, countIt, source}, {0, countIt, source}}));
    parser->nextTag(tag);
    EXPECT_EQ(parser->content(text), 1);
    ASSERT_EQ(unitsOf(text), patternText(1024));
    parser->nextTag(tag);
    parser->nextTag(tag);

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), source);
    EXPECT_EQ(parser->content(text, 1024), 1);
    EXPECT_EQ(unitsOf(text), source);
}

INSTANTIATE_TEST_SUITE_P(Units, OLMXMLParserClearedBufferTest,
                         testing::Values(0U, 1U, 3U, 500U, 1023U),
                         testing::PrintToStringParamName());

class OLMXMLParserNegativeCountTest : public OLMXMLParserContentTest,
                                      public testing::WithParamInterface<uint32_t> {};

TEST_P(OLMXMLParserNegativeCountTest, EmptiesTheTextAndCountsAsRead) {
    readReads({{0, GetParam(), u"abc"}, {0, GetParam(), u"def"}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"");
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 1);

    text = qor::WString("before");
    EXPECT_EQ(parser->content(text, 100), 1);
    EXPECT_EQ(unitsOf(text), u"");
}

INSTANTIATE_TEST_SUITE_P(Counts, OLMXMLParserNegativeCountTest,
                         testing::Values(0xFFFFFFFEU, 0xFFFFFC00U, 0x80000000U),
                         testing::PrintToStringParamName());

TEST_F(OLMXMLParserContentTest, FailedFirstReadReturns0AndKeepsTheEarlierText) {
    readReads({{-1, 3, u"abc"}});

    EXPECT_EQ(parser->content(text), 0);
    EXPECT_EQ(unitsOf(text), u"before");
}

TEST_F(OLMXMLParserContentTest, FailureAfterTheFirstChunkKeepsWhatWasRead) {
    readReads({{0, 1024, patternText(1024)}, {-1, 0, {}}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024));
}

TEST_F(OLMXMLParserContentTest, UnitsThatComeWithAFailureAreAppendedAndEndTheText) {
    readReads({{0, 1024, patternText(1024)}, {-1, 2, u"xy"}, {0, 2, u"zz"}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024) + u"xy");
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 2);
}

TEST_F(OLMXMLParserContentTest, FullChunkThatComesWithAFailureEndsTheText) {
    readReads({{0, 1024, patternText(1024)}, {5, 1024, patternText(1024)}, {0, 2, u"zz"}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024) + patternText(1024));
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 2);
}

TEST_F(OLMXMLParserContentTest, NegativeCountOfALaterChunkAppendsNothing) {
    readReads({{0, 1024, patternText(1024)}, {0, countIt, u"abc"}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024));
    EXPECT_EQ(host.countOf(CallKind::ReadContent), 2);
}

TEST_F(OLMXMLParserContentTest, ShortChunkEndsTheTextAndTheRestIsSkipped) {
    readReads({{0, 3, u"abc"}, {0, 3, u"def"}});

    EXPECT_EQ(parser->content(text), 1);
    EXPECT_EQ(unitsOf(text), u"abc");
    EXPECT_EQ(parser->nextTag(tag), 1);
    EXPECT_TRUE(tag.flags() & 0x1000);
}

TEST_F(OLMXMLParserContentTest, EveryFailedReadEndsTheTextThere) {
    for (int failing = 0; failing < 3; ++failing) {
        SCOPED_TRACE(failing);
        FakeHost own;
        own.entry("a.xml", document("notes").text(patternText(3000)));
        OLMXMLParser reader(own.openArchive(), 0);
        reader.nextTag(tag);
        text = qor::WString("before");
        own.failCall(CallKind::ReadContent, failing, -1);

        EXPECT_EQ(reader.content(text), failing == 0 ? 0 : 1);

        const auto kept = static_cast<size_t>(failing) * 1024;
        EXPECT_EQ(unitsOf(text), failing == 0 ? u"before" : patternText(kept));
        EXPECT_EQ(reader.nextTag(tag), 1);
        EXPECT_TRUE(tag.flags() & 0x1000);
    }
}

// --- Content with a limit.

TEST_F(OLMXMLParserContentTest, LimitedReadIsOneReadAndTheRestIsSkipped) {
    readTo(document("notes").text(patternText(3000)));

    EXPECT_EQ(parser->content(text, 10), 1);
    EXPECT_EQ(unitsOf(text), patternText(10));
    EXPECT_EQ(parser->nextTag(tag), 1);

    EXPECT_TRUE(tag.flags() & 0x1000);
    EXPECT_THAT(host.callTexts(),
                ElementsAre("UTXMLReadContent(1, 10)", "UTXMLReadNextTag()", "UTXMLSkipContent()",
                            "UTXMLReadNextTag()", "UTXMLGetNextAttribute()"));
}

TEST_F(OLMXMLParserContentTest, LimitAbove1024IsReducedToIt) {
    readTo(document("notes").text(patternText(3000)));

    EXPECT_EQ(parser->content(text, 5000), 1);
    EXPECT_EQ(unitsOf(text), patternText(1024));
    EXPECT_THAT(host.callTexts(), ElementsAre("UTXMLReadContent(1, 0x400)"));
}

TEST_F(OLMXMLParserContentTest, LimitedReadsGoThroughTheTextOneByOne) {
    readTo(document("notes").text(patternText(2500)));
    std::u16string all;

    while (parser->content(text, 1024) != 0) {
        all += unitsOf(text);
    }

    EXPECT_EQ(all, patternText(2500));
}

TEST_F(OLMXMLParserContentTest, LimitedReadOfNothingReturns0AndKeepsTheEarlierText) {
    readTo(document("notes"));

    EXPECT_EQ(parser->content(text, 1024), 0);
    EXPECT_EQ(unitsOf(text), u"before");
}

TEST_F(OLMXMLParserContentTest, LimitOf0Returns0AndLeavesTheTextUnread) {
    readTo(document("notes").text("abc"));

    EXPECT_EQ(parser->content(text, 0), 0);
    EXPECT_EQ(unitsOf(text), u"before");
    EXPECT_EQ(parser->content(text, 9), 1);
    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST_F(OLMXMLParserContentTest, LimitedReadCountsTerminatedText) {
    readReads({{0, countIt, {u'a', u'b', 0, u'c'}}, {0, countIt, patternText(4)}});

    EXPECT_EQ(parser->content(text, 100), 1);
    EXPECT_EQ(unitsOf(text), u"ab");
    EXPECT_EQ(parser->content(text, 4), 1);
    EXPECT_EQ(unitsOf(text), patternText(4));
}

// --- Skipping.

TEST_F(OLMXMLParserTest, SkipTagSkipsTheWholeElement) {
    OLMXMLParser& reader =
        parse(document("notes").open("a").element("b", "x").close().open("note"));
    reader.nextTag(tag);
    reader.nextTag(tag);

    EXPECT_EQ(reader.skipTag(tag), 1);

    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_EQ(tag.id(), 6U);
}

TEST_F(OLMXMLParserTest, SkipTagOnAClosingTagReadsNothing) {
    OLMXMLParser& reader = parse(note());
    for (int i = 0; i < 3; ++i) {
        reader.nextTag(tag);
    }
    host.forgetCalls();

    EXPECT_EQ(reader.skipTag(tag), 1);

    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(OLMXMLParserTest, SkipTagReturns0WhenTheReaderFails) {
    OLMXMLParser& reader = parse(note());
    reader.nextTag(tag);

    for (const int status : {-1, 1, 101}) {
        host.failCall(CallKind::SkipTag, 0, status);
        EXPECT_EQ(reader.skipTag(tag), 0);
    }
    EXPECT_EQ(reader.skipTag(tag), 1);
}

TEST_F(OLMXMLParserTest, SkipTagReturns0InABrokenElement) {
    OLMXMLParser& reader = parse(document("notes").open("note").breakOff());
    reader.nextTag(tag);
    reader.nextTag(tag);

    EXPECT_EQ(reader.skipTag(tag), 0);
}

// --- Saved states.

TEST_F(OLMXMLParserTest, SavedStateMovesAnotherParserToTheSamePlace) {
    host.entry("a.xml", document("notes").element("note").element("a", "text").element("b"));
    OLMXMLParser& first = open(0);
    tagUTXMLSaveData save{};
    for (int i = 0; i < 3; ++i) {
        first.nextTag(tag);
    }
    first.getParserState(&save);

    OLMXMLParser& second = open(0);
    second.nextTag(tag);
    second.setParserState(&save);

    qor::WString text;
    EXPECT_EQ(second.nextTag(tag), 1);
    EXPECT_EQ(tag.id(), 50U);
    EXPECT_EQ(second.content(text), 1);
    EXPECT_EQ(unitsOf(text), u"text");
    EXPECT_EQ(second.nextTag(tag), 1);
    EXPECT_EQ(second.nextTag(tag), 1);
    EXPECT_EQ(tag.id(), 51U);
}

TEST_F(OLMXMLParserTest, MapsAddedAfterARestoreApply) {
    constexpr UTXML_STRVALPAIR later[] = {{99, "a"}};
    OLMXMLParser& reader = parse(document("notes").element("a"));
    reader.nextTag(tag);
    tagUTXMLSaveData save{};
    reader.getParserState(&save);
    reader.setParserState(&save);

    EXPECT_EQ(reader.addTags(later, 1), 0);

    EXPECT_EQ(reader.nextTag(tag), 1);
    EXPECT_EQ(tag.id(), 99U);
}

// --- Sweep.

// Whatever fails, reading a document ends and releases everything.
TEST_F(OLMXMLParserTest, NoFailureOfTheReaderIsEndlessOrLeaks) {
    const ItemDocument source =
        document("notes").open("note").attribute("x", "y").element("a", "text").element("b");
    const auto readThrough = [&](FakeHost& own) {
        ArchiveDirectory* opened = own.openArchive();
        own.resetCallCount();
        try {
            OLMXMLParser reader(opened, 0);
            OLMXMLTag current;
            qor::WString text;
            while (reader.nextTag(current) != 0) {
                reader.content(text);
            }
        } catch (const qor::Exception&) {
            return false;
        }
        return true;
    };
    FakeHost counting;
    counting.entry("a.xml", source);
    ASSERT_TRUE(readThrough(counting));
    const int calls = counting.hostCallCount();
    ASSERT_GT(calls, 10);

    for (int failing = 0; failing < calls; ++failing) {
        SCOPED_TRACE(failing);
        FakeHost own;
        own.entry("a.xml", source);
        own.failAnyCall(failing);
        const bool isRead = readThrough(own);
        EXPECT_TRUE(own.hasFailed());
        // Only the open, the reader's init and the root map make the constructor throw.
        const bool isInInit = failing == 0 || failing == 1 || failing == 3;
        EXPECT_EQ(isRead, !isInInit);
        if (isRead) {
            EXPECT_THAT(own.openHandleTexts(), ElementsAre("archive"));
            EXPECT_EQ(own.openReaders(), 0);
        }
    }
}

} // namespace
