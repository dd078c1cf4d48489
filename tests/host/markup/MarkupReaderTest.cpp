#include "host/markup/MarkupReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/markup/Puller.h"

namespace {

using olmhost::FaultKind;
using olmtest::abc;
using olmtest::MemoryDocument;
using olmtest::Puller;
using testing::HasSubstr;

using Events = std::vector<std::string>;

// Every test runs with reads of several sizes, so that tokens are split everywhere.
class MarkupReaderTest : public testing::TestWithParam<std::uint32_t> {
protected:
    MemoryDocument document(const std::string& bytes) { return MemoryDocument(bytes, GetParam()); }
    Events events(const std::string& bytes, std::uint32_t capacity = 1024) {
        MemoryDocument made(bytes, GetParam());
        return olmtest::eventsOf(made, capacity);
    }
    // Reads up to and including the opening tag with this id.
    static void goTo(Puller& puller, std::uint32_t id) {
        do {
            ASSERT_EQ(puller.nextTag(), 0);
        } while (puller.tag.id != id || puller.tag.flags != 0);
    }
};

INSTANTIATE_TEST_SUITE_P(ReadSizes, MarkupReaderTest, testing::Values(1, 2, 3, 7, 65536),
                         [](const auto& row) { return "Bytes" + std::to_string(row.param); });

TEST_P(MarkupReaderTest, EveryElementIsAnOpeningAndAClosingTag) {
    EXPECT_EQ(events("<root><a>x</a><b/><c></c></root>"),
              (Events{"<100", "<1", "#x", "</1", "<2", "</2", "<3", "</3", "</100", "end"}));
}

TEST_P(MarkupReaderTest, NamesAreTheQualifiedNamesAsWritten) {
    const UTXML_STRVALPAIR rows[] = {{7, "n:a"}, {8, "a"}};
    MemoryDocument made = document("<n:a xmlns:n='u' n:x='1'><a xmlns='u'/><n:b/></n:a>");
    Puller puller(made);
    puller.addMap(rows);

    EXPECT_EQ(puller.rest(),
              (Events{"<7 xmlns:n='u' n:x='1'", "<8 xmlns='u'", "</8", "<?", "</?", "</7", "end"}));
}

TEST_P(MarkupReaderTest, NamesAreComparedWholeAndWithTheirCase) {
    EXPECT_EQ(events("<a><A/><aa/></a>"), (Events{"<1", "<?", "</?", "<?", "</?", "</1", "end"}));
}

TEST_P(MarkupReaderTest, ALaterRowOfTheSameNameReplacesAnEarlierOne) {
    const UTXML_STRVALPAIR first[] = {{1, "a"}, {2, "b"}};
    const UTXML_STRVALPAIR second[] = {{77, "a"}};
    MemoryDocument made = document("<a><b/></a>");
    Puller puller(made);
    puller.addMap(first);
    puller.addMap(second);

    EXPECT_EQ(puller.rest(), (Events{"<77", "<2", "</2", "</77", "end"}));
}

TEST_P(MarkupReaderTest, TheFirstMapWinsAgainWhenItIsAddedAgain) {
    const UTXML_STRVALPAIR first[] = {{1, "a"}};
    const UTXML_STRVALPAIR second[] = {{77, "a"}};
    MemoryDocument made = document("<root><a/><a/></root>");
    Puller puller(made);
    puller.addMap(first);
    puller.addMap(second);
    puller.nextTag();
    puller.nextTag();
    EXPECT_EQ(puller.tag.id, 77U);
    puller.addMap(first);

    EXPECT_EQ(puller.rest(), (Events{"</77", "<1", "</1", "</?", "end"}));
}

TEST_P(MarkupReaderTest, RowsChangedInPlaceAreSeen) {
    UTXML_STRVALPAIR rows[] = {{1, "a"}};
    MemoryDocument made = document("<a><a/></a>");
    Puller puller(made);
    puller.addMap(rows);
    puller.nextTag();
    rows[0].value = 5;
    puller.addMap(rows);

    EXPECT_EQ(puller.rest(), (Events{"<5", "</5", "</1", "end"}));
}

TEST_P(MarkupReaderTest, AClosingTagHasItsOpeningTagsIdWhateverMapsCameBetween) {
    const UTXML_STRVALPAIR later[] = {{50, "root"}, {51, "x"}};
    MemoryDocument made = document("<root><x></x></root>");
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    puller.nextTag();
    puller.addMap(later);

    EXPECT_EQ(puller.rest(), (Events{"</?", "</100", "end"}));
}

TEST_P(MarkupReaderTest, AValueKeepsItsLow32Bits) {
    const UTXML_STRVALPAIR rows[] = {{0x180000005, "a"}};
    MemoryDocument made = document("<a/>");
    Puller puller(made);
    puller.addMap(rows);
    puller.nextTag();

    EXPECT_EQ(puller.tag.id, 0x80000005U);
}

TEST_P(MarkupReaderTest, AttributesComeInTheDocumentsOrderWithTheirExactLengths) {
    EXPECT_EQ(events("<a z='1' b='' c='&lt;&#x1F600;&amp;'\n  d = \"\xC3\xA9\"/>"),
              (Events{"<1 z='1' b='' c='<\xF0\x9F\x98\x80&' d='\xC3\xA9'", "</1", "end"}));
}

TEST_P(MarkupReaderTest, AttributesStayWhileTextIsRead) {
    MemoryDocument made = document("<a x='1' y='2'>" + std::string(300000, 't') + "</a>");
    Puller puller(made);
    puller.addMap(abc());
    ASSERT_EQ(UTXMLReadNextTag(&puller.reader, &puller.tag, &puller.extra), 0);
    const std::uint16_t* name = nullptr;
    const std::uint16_t* value = nullptr;
    std::uint32_t word = 0;
    std::uint32_t nameLength = 0;
    std::uint32_t valueLength = 0;
    EXPECT_EQ(
        UTXMLGetNextAttribute(&puller.reader, &word, &name, &value, &nameLength, &valueLength), 0);
    EXPECT_EQ(puller.text().size(), 300000U);

    ASSERT_EQ(
        UTXMLGetNextAttribute(&puller.reader, &word, &name, &value, &nameLength, &valueLength), 0);
    EXPECT_EQ(nameLength, 1U);
    EXPECT_EQ(*name, 'y');
    EXPECT_EQ(*value, '2');
    EXPECT_NE(
        UTXMLGetNextAttribute(&puller.reader, &word, &name, &value, &nameLength, &valueLength), 0);
}

TEST_P(MarkupReaderTest, TextIsAllCharacterDataUpToTheNextTag) {
    EXPECT_EQ(events("<a>1<!-- no -->2<?p q?>3<![CDATA[<&>]]>&lt;&#65;&#x42;]</a>"),
              (Events{"<1", "#123<&><AB]", "</1", "end"}));
}

TEST_P(MarkupReaderTest, LineEndsBecomeLineFeeds) {
    EXPECT_EQ(events("<a>1\r\n2\r3\n&#13;</a>"), (Events{"<1", "#1\n2\n3\n\r", "</1", "end"}));
}

TEST_P(MarkupReaderTest, TextIsOnlyDirectlyAfterAnOpeningTag) {
    EXPECT_EQ(events("<a>one<b/>two<c>three</c>four</a>"),
              (Events{"<1", "#one", "<2", "</2", "<3", "#three", "</3", "</1", "end"}));
}

TEST_P(MarkupReaderTest, WhiteSpaceIsTextWhenTheElementsOwnClosingTagFollows) {
    EXPECT_EQ(events("<a> \n\t</a>"), (Events{"<1", "# \n\t", "</1", "end"}));
}

TEST_P(MarkupReaderTest, WhiteSpaceIsNotTextWhenAnotherOpeningTagFollows) {
    EXPECT_EQ(events("<a> \n\t<b>  x </b> </a>"),
              (Events{"<1", "<2", "#  x ", "</2", "</1", "end"}));
}

TEST_P(MarkupReaderTest, CommentsAmidWhiteSpaceDecideNothing) {
    EXPECT_EQ(events("<a> <!-- x --> <b> <!-- y --> </b></a>"),
              (Events{"<1", "<2", "#  ", "</2", "</1", "end"}));
}

TEST_P(MarkupReaderTest, ResolvedWhiteSpaceCountsAsWhiteSpace) {
    EXPECT_EQ(events("<a>&#32;<![CDATA[ ]]><b/></a>"), (Events{"<1", "<2", "</2", "</1", "end"}));
}

TEST_P(MarkupReaderTest, LongWhiteSpaceIsTextOnceALetterFollows) {
    const std::string blank(100000, ' ');
    EXPECT_EQ(events("<a>" + blank + "x</a>"), (Events{"<1", "#" + blank + "x", "</1", "end"}));
    EXPECT_EQ(events("<a>" + blank + "<b/></a>"), (Events{"<1", "<2", "</2", "</1", "end"}));
    EXPECT_EQ(events("<a>" + blank + "</a>"), (Events{"<1", "#" + blank, "</1", "end"}));
}

TEST_P(MarkupReaderTest, UnreadTextIsAnnouncedOnceAndTheTagComesNext) {
    MemoryDocument made = document("<a>text</a>");
    Puller puller(made);
    puller.addMap(abc());
    EXPECT_EQ(puller.next(), 0);
    const UTXMLTagRecord opening = puller.tag;

    EXPECT_EQ(puller.next(), UTXML_CONTENT_PENDING);
    EXPECT_EQ(std::memcmp(&puller.tag, &opening, sizeof opening), 0);
    EXPECT_EQ(puller.next(), 0);
    EXPECT_EQ(puller.tagText(), "</1");
}

TEST_P(MarkupReaderTest, TextReadInPartIsAnnouncedOnce) {
    MemoryDocument made = document("<a>text<b/></a>");
    Puller puller(made);
    puller.addMap(abc());
    puller.next();
    std::int16_t status = -9;
    EXPECT_EQ(puller.read(2, status), u"te");

    EXPECT_EQ(puller.next(), UTXML_CONTENT_PENDING);
    EXPECT_EQ(UTXMLSkipContent(&puller.reader), 0);
    EXPECT_EQ(puller.next(), 0);
    EXPECT_EQ(puller.tagText(), "<2");
}

TEST_P(MarkupReaderTest, AnnouncedTextCanStillBeRead) {
    MemoryDocument made = document("<a>text</a>");
    Puller puller(made);
    puller.addMap(abc());
    puller.next();
    EXPECT_EQ(puller.next(), UTXML_CONTENT_PENDING);

    EXPECT_EQ(puller.text(), "text");
    EXPECT_EQ(puller.next(), 0);
    EXPECT_EQ(puller.tagText(), "</1");
}

TEST_P(MarkupReaderTest, TextReadToItsLastUnitIsNotAnnounced) {
    MemoryDocument made = document("<a>text</a>");
    Puller puller(made);
    puller.next();
    std::int16_t status = -9;
    EXPECT_EQ(puller.read(4, status), u"text");
    EXPECT_EQ(status, 0);

    EXPECT_EQ(puller.next(), 0);
}

TEST_P(MarkupReaderTest, AReadIsShortOnlyAtTheEndAndThenThereIsNone) {
    MemoryDocument made = document("<a>1&amp;2<!-- -->3&lt;4567</a>");
    Puller puller(made);
    puller.next();
    std::int16_t status = -9;

    EXPECT_EQ(puller.read(3, status), u"1&2");
    EXPECT_EQ(puller.read(3, status), u"3<4");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(puller.read(5, status), u"567");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(puller.read(5, status), u"");
    EXPECT_NE(status, 0);
    EXPECT_EQ(puller.next(), 0);
}

TEST_P(MarkupReaderTest, ThereIsNoTextAfterAClosingTagOrBeforeTheFirstTag) {
    MemoryDocument made = document("<a><b>x</b>y</a>");
    Puller puller(made);
    EXPECT_EQ(puller.text(), "(none)");
    puller.nextTag();
    puller.nextTag();
    puller.nextTag();
    ASSERT_EQ(puller.tag.flags & UTXML_CLOSING_TAG, UTXML_CLOSING_TAG);

    EXPECT_EQ(puller.text(), "(none)");
    EXPECT_EQ(puller.next(), 0) << "text after a closing tag is not announced either";
}

TEST_P(MarkupReaderTest, AnEmptyElementHasNoText) {
    MemoryDocument made = document("<a><b></b><c/></a>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 2);
    EXPECT_EQ(puller.text(), "(none)");
    goTo(puller, 3);
    EXPECT_EQ(puller.text(), "(none)");
    EXPECT_EQ(puller.next(), 0);
}

TEST_P(MarkupReaderTest, ASurrogatePairMayBeSplitBetweenTwoReads) {
    MemoryDocument made = document("<a>x\xF0\x9F\x98\x80\xF0\x9F\x98\x81</a>");
    Puller puller(made);
    puller.next();
    std::int16_t status = -9;

    EXPECT_EQ(puller.read(2, status), (std::u16string{u'x', 0xD83D}));
    EXPECT_EQ(puller.read(2, status), (std::u16string{0xDE00, 0xD83D}));
    EXPECT_EQ(puller.next(), UTXML_CONTENT_PENDING) << "half a character is still unread";
    EXPECT_EQ(puller.read(2, status), (std::u16string{0xDE01}));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(puller.read(2, status), u"");
    EXPECT_NE(status, 0);
}

TEST_P(MarkupReaderTest, TextsAreTheSameWhateverTheCapacity) {
    std::string text;
    for (int i = 0; i < 700; ++i) {
        text += "ab\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80" + std::to_string(i);
    }
    for (const std::uint32_t capacity : {1U, 2U, 3U, 5U, 1023U, 1024U, 1025U, 100000U}) {
        EXPECT_EQ(events("<a>" + text + "</a>", capacity), (Events{"<1", "#" + text, "</1", "end"}))
            << capacity;
    }
}

TEST_P(MarkupReaderTest, TextsOfLengthsAroundTheModulesChunkAreWhole) {
    for (const std::size_t length : {1U, 1023U, 1024U, 1025U, 2048U, 3000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(events("<a>" + text + "</a>"), (Events{"<1", "#" + text, "</1", "end"}));
    }
}

TEST_P(MarkupReaderTest, ACapacityOfZeroReadsNothing) {
    MemoryDocument made = document("<a>text</a>");
    Puller puller(made);
    puller.next();
    std::int16_t status = -9;
    EXPECT_EQ(puller.read(0, status), u"");
    EXPECT_EQ(puller.text(), "text");
}

TEST_P(MarkupReaderTest, SkippingATagLeavesTheReaderAfterItsClosingTag) {
    MemoryDocument made = document("<root><a>t<b><a>u</a></b>v</a><c/></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);

    EXPECT_EQ(puller.skip(puller.tag), 0);
    EXPECT_EQ(puller.text(), "(none)");
    EXPECT_EQ(puller.rest(), (Events{"<3", "</3", "</100", "end"}));
}

TEST_P(MarkupReaderTest, SkippingLeavesSeveralLevels) {
    MemoryDocument made = document("<root><a><b><c>t</c></b><d/></a><e/></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);
    const UTXMLTagRecord outer = puller.tag;
    goTo(puller, 3);

    EXPECT_EQ(puller.skip(outer), 0);
    EXPECT_EQ(puller.rest(), (Events{"<5", "</5", "</100", "end"}));
}

TEST_P(MarkupReaderTest, SkippingASelfClosedTagLeavesWhatFollows) {
    MemoryDocument made = document("<root><a/><b/></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);

    EXPECT_EQ(puller.skip(puller.tag), 0);
    EXPECT_EQ(puller.rest(), (Events{"<2", "</2", "</100", "end"}));
}

TEST_P(MarkupReaderTest, SkippingPassesAnElementOfManyChunks) {
    std::string inner;
    for (int i = 0; i < 20000; ++i) {
        inner += "<b x='1'>text<c/></b>";
    }
    MemoryDocument made = document("<root><a>" + inner + "</a><d>t</d></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);

    EXPECT_EQ(puller.skip(puller.tag), 0);
    EXPECT_EQ(puller.rest(), (Events{"<4", "#t", "</4", "</100", "end"}));
}

TEST_P(MarkupReaderTest, SkippingATagThatIsNoLongerOpenFails) {
    MemoryDocument made = document("<root><a/><a/></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);
    const UTXMLTagRecord first = puller.tag;
    puller.nextTag();
    EXPECT_NE(puller.skip(first), 0) << "closed";
    puller.nextTag();
    EXPECT_NE(puller.skip(first), 0) << "a sibling is open at its depth";
    EXPECT_NE(puller.skip(UTXMLTagRecord{}), 0) << "never opened";

    EXPECT_EQ(puller.rest(), (Events{"</1", "</100", "end"})) << "nothing was skipped";
}

TEST_P(MarkupReaderTest, SkippingInABrokenDocumentFails) {
    MemoryDocument made = document("<root><a><b></a></root>");
    Puller puller(made);
    puller.addMap(abc());
    goTo(puller, 1);

    EXPECT_NE(puller.skip(puller.tag), 0);
    EXPECT_EQ(made.faults.size(), 1U);
    EXPECT_LT(puller.next(), 0);
}

TEST_P(MarkupReaderTest, TheEndStaysNegativeAndLeavesTheRecord) {
    MemoryDocument made = document("<a x='1'></a>");
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    puller.nextTag();
    const UTXMLTagRecord last = puller.tag;
    const std::uint64_t lastExtra = puller.extra;

    for (int i = 0; i < 5; ++i) {
        EXPECT_LT(puller.next(), 0);
        EXPECT_EQ(std::memcmp(&puller.tag, &last, sizeof last), 0);
        EXPECT_EQ(puller.extra, lastExtra);
        EXPECT_TRUE(puller.attributes.empty());
    }
    EXPECT_TRUE(made.faults.empty());
}

TEST_P(MarkupReaderTest, WhatFollowsTheRootIsParsed) {
    MemoryDocument fine = document("<a></a> \n<!-- c --><?p q?>\n");
    EXPECT_EQ(olmtest::eventsOf(fine), (Events{"<1", "</1", "end"}));
    EXPECT_TRUE(fine.faults.empty());

    MemoryDocument junk = document("<a></a> junk");
    EXPECT_EQ(olmtest::eventsOf(junk), (Events{"<1", "</1", "end"}));
    ASSERT_EQ(junk.faults.size(), 1U);
    EXPECT_EQ(junk.faults[0].text, "line 1, column 9: junk after document element");
}

TEST_P(MarkupReaderTest, ABrokenDocumentIsReadUpToTheFaultWhichIsReportedOnce) {
    MemoryDocument made = document("<root>\n<a>one</a>\n <b>two</c></root>");
    Puller puller(made);
    puller.addMap(abc());

    EXPECT_EQ(puller.rest(), (Events{"<100", "<1", "#one", "</1", "<2", "#two", "end"}));
    EXPECT_LT(puller.next(), 0);
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::BrokenMarkup);
    EXPECT_EQ(made.faults[0].text, "line 3, column 10: mismatched tag");
}

TEST_P(MarkupReaderTest, TextUpToTheFaultIsTheElementsContent) {
    EXPECT_EQ(events("<a>text & more</a>"), (Events{"<1", "#text ", "end"}));
    EXPECT_EQ(events("<a>cut o"), (Events{"<1", "#cut o", "end"}));
    EXPECT_EQ(events("<a>  "), (Events{"<1", "#  ", "end"}));
    EXPECT_EQ(events("<a>bad \xFF byte</a>"), (Events{"<1", "#bad ", "end"}));
}

TEST_P(MarkupReaderTest, ATruncatedDocumentIsReportedAsSuch) {
    MemoryDocument made = document("<a>\n<b>cut o");
    olmtest::eventsOf(made);
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].text,
              "line 2, column 9: the document ends before its root element does");
}

TEST_P(MarkupReaderTest, DocumentsWithoutElementsAreBroken) {
    for (const char* bytes : {"", "   ", "text", "<!-- only -->", "\xEF\xBB\xBF"}) {
        MemoryDocument made = document(bytes);
        EXPECT_EQ(olmtest::eventsOf(made), Events{"end"}) << bytes;
        EXPECT_EQ(made.faults.size(), 1U) << bytes;
    }
}

TEST_P(MarkupReaderTest, AStreamThatFailsEndsTheDocument) {
    MemoryDocument made = document("<a>");
    made.failsReading = true;
    EXPECT_EQ(olmtest::eventsOf(made), Events{"end"});
    EXPECT_EQ(made.faults.size(), 1U);
}

TEST_P(MarkupReaderTest, TheNestingLimitEndsTheDocument) {
    MemoryDocument made = document("<a><b><c/><d><e/></d></b></a>");
    made.bounds.deepestNesting = 3;

    EXPECT_EQ(olmtest::eventsOf(made), (Events{"<1", "<2", "<3", "</3", "<4", "end"}));
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);
    EXPECT_EQ(made.faults[0].text,
              "line 1, column 14: elements are nested deeper than the limit of 3");
}

TEST_P(MarkupReaderTest, TheNestingLimitHoldsForSkippedElements) {
    MemoryDocument made = document("<a><b><c><d/></c></b></a>");
    made.bounds.deepestNesting = 3;
    Puller puller(made);
    puller.next();
    EXPECT_NE(puller.skip(puller.tag), 0);
    EXPECT_EQ(made.faults.size(), 1U);
}

TEST_P(MarkupReaderTest, TheStartTagLimitEndsTheDocument) {
    MemoryDocument made = document("<a><b x='" + std::string(200, 'y') + "'/></a>");
    made.bounds.longestAttribute = 208;
    EXPECT_EQ(olmtest::eventsOf(made), (Events{"<1", "end"}));
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);
    EXPECT_THAT(made.faults[0].text, HasSubstr("line 1, column 4: "));

    MemoryDocument fits = document(made.bytes);
    fits.bounds.longestAttribute = 209;
    EXPECT_EQ(olmtest::eventsOf(fits).size(), 5U);
    EXPECT_TRUE(fits.faults.empty());
}

TEST_P(MarkupReaderTest, AnEndlessTokenIsNotHeldCompletely) {
    for (const char* begin : {"<a x='", "<a><!-- ", "<a><?p ", "<a></"}) {
        MemoryDocument made = document(begin + std::string(1000000, 'y'));
        made.bounds.longestAttribute = 10000;
        olmtest::eventsOf(made);
        ASSERT_EQ(made.faults.size(), 1U) << begin;
        EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached) << begin;
        EXPECT_LT(made.bytesRead, 100000U) << begin;
    }
}

TEST_P(MarkupReaderTest, TheBlankLimitEndsTheDocument) {
    const std::string fits(1000, ' ');
    for (const char* start : {"<a>", "<a><b/>"}) {
        MemoryDocument made = document(start + fits + " </a>");
        made.bounds.longestBlank = 1000;
        olmtest::eventsOf(made);
        ASSERT_EQ(made.faults.size(), 1U);
        EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);

        MemoryDocument allowed = document(start + fits + "</a>");
        allowed.bounds.longestBlank = 1000;
        olmtest::eventsOf(allowed);
        EXPECT_TRUE(allowed.faults.empty());
    }
}

TEST_P(MarkupReaderTest, UndefinedEntitiesAreAFault) {
    EXPECT_EQ(events("<a>1&nbsp;2</a>"), (Events{"<1", "#1", "end"}));
}

TEST_P(MarkupReaderTest, AnUnknownEncodingIsAFault) {
    EXPECT_EQ(events("<?xml version='1.0' encoding='x-own'?><a/>"), Events{"end"});
}

TEST_P(MarkupReaderTest, Latin1AndAsciiAreRead) {
    EXPECT_EQ(events("<?xml version='1.0' encoding='iso-8859-1'?><a x='\xE9'>\xFC</a>"),
              (Events{"<1 x='\xC3\xA9'", "#\xC3\xBC", "</1", "end"}));
    EXPECT_EQ(events("<?xml version='1.0' encoding='US-ASCII'?><a>x\xFC</a>"),
              (Events{"<1", "#x", "end"}));
}

TEST(UTXMLTest, EveryFunctionRefusesABlockWithoutAReader) {
    UTXMLReader block{};
    UTXMLTagRecord tag{};
    std::uint64_t extra = 0;
    std::uint32_t count = 5;
    std::uint16_t unit = 0;
    const std::uint16_t* text = nullptr;
    tagUTXMLSaveData place{};

    EXPECT_LT(UTXMLInit(&block, nullptr), 0);
    EXPECT_LT(UTXMLInit(nullptr, nullptr), 0);
    EXPECT_LT(UTXMLReadNextTag(&block, &tag, &extra), 0);
    EXPECT_LT(UTXMLSetOption(&block, 4, 1), 0);
    EXPECT_LT(UTXMLAddTagMap(&block, "", 0, 0, nullptr, 0), 0);
    EXPECT_LT(UTXMLSkipContent(&block), 0);
    EXPECT_LT(UTXMLGetNextAttribute(&block, &count, &text, &text, &count, &count), 0);
    EXPECT_LT(UTXMLReadContent(&block, 1, &unit, 1, &count), 0);
    EXPECT_EQ(count, 0U);
    EXPECT_LT(UTXMLSkipTag(&block, 1, 1), 0);
    EXPECT_LT(UTXMLGetStateInfo(&block, &place), 0);
    EXPECT_LT(UTXMLRestoreStateInfo(&block, &place), 0);
    UTXMLDeInit(&block);
    UTXMLDeInit(nullptr);
}

TEST(UTXMLTest, AnEndedReaderCanBeEndedAgain) {
    MemoryDocument made("<a/>");
    UTXMLReader block;
    std::memset(&block, 0xCD, sizeof block);
    ASSERT_EQ(UTXMLInit(&block, &made), 0);
    UTXMLDeInit(&block);
    UTXMLDeInit(&block);
    UTXMLTagRecord tag{};
    std::uint64_t extra = 0;
    EXPECT_LT(UTXMLReadNextTag(&block, &tag, &extra), 0);
}

TEST(UTXMLTest, AReaderLivesInTheFirstWordOfItsBlock) {
    MemoryDocument made("<a/>");
    UTXMLReader block;
    std::memset(&block, 0xCD, sizeof block);
    ASSERT_EQ(UTXMLInit(&block, &made), 0);
    UTXMLReader moved = block;
    std::memset(&block, 0, sizeof block);
    UTXMLTagRecord tag{};
    std::uint64_t extra = 0;
    EXPECT_EQ(UTXMLReadNextTag(&moved, &tag, &extra), 0);
    UTXMLDeInit(&moved);
}

TEST(UTXMLTest, OtherOptionsSpacesAndRowsAreRefused) {
    MemoryDocument made("<a/>");
    Puller puller(made);
    const UTXML_STRVALPAIR nameless[] = {{1, "a"}, {2, nullptr}};
    EXPECT_NE(UTXMLSetOption(&puller.reader, 5, 1), 0);
    EXPECT_NE(UTXMLSetOption(&puller.reader, 4, 2), 0);
    EXPECT_NE(UTXMLAddTagMap(&puller.reader, "space", 0, 0, abc().data(), 1), 0);
    EXPECT_NE(UTXMLAddTagMap(&puller.reader, "", 0, 0, nullptr, 1), 0);
    EXPECT_NE(UTXMLAddTagMap(&puller.reader, "", 0, 0, nameless, 2), 0);
    EXPECT_EQ(UTXMLAddTagMap(&puller.reader, "", 0, 0, nullptr, 0), 0);
    EXPECT_EQ(puller.rest(), (Events{"<?", "</?", "end"}));
}

TEST(UTXMLTest, ReadersAreIndependentAndManyMayBeOpen) {
    std::vector<std::unique_ptr<MemoryDocument>> documents;
    std::vector<std::unique_ptr<Puller>> pullers;
    for (int i = 0; i < 20; ++i) {
        documents.push_back(
            std::make_unique<MemoryDocument>("<a>" + std::to_string(i) + "<b/></a>", 3));
        pullers.push_back(std::make_unique<Puller>(*documents.back()));
        pullers.back()->addMap(abc());
    }
    for (auto& puller : pullers) {
        puller->nextTag();
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(pullers[i]->text(), std::to_string(i));
        EXPECT_EQ(pullers[i]->rest(), (Events{"<2", "</2", "</1", "end"}));
    }
}

TEST(UTXMLTest, AMapOfAnEarlierReaderIsForgotten) {
    for (int i = 0; i < 3; ++i) {
        MemoryDocument made("<a/>");
        Puller puller(made);
        EXPECT_EQ(puller.rest(), (Events{"<?", "</?", "end"}));
        puller.addMap(abc());
    }
}

} // namespace
