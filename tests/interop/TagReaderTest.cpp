// The XML reader of the example host, called function by function as the module calls it.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filter/olmfilter.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t maxBytesPerRead = 7;

std::vector<std::string> faults;

// A document in memory, read a few bytes at a time.
struct Bytes : HostStream {
    explicit Bytes(std::string text) : HostStream{}, text(std::move(text)) {
        read = [](HostStream* handle, void* buffer, uint32_t size, uint32_t* bytesRead) {
            auto& self = *static_cast<Bytes*>(handle);
            const std::size_t rest = self.text.size() - self.place;
            const std::size_t count = std::min({rest, std::size_t{size}, maxBytesPerRead});
            std::memcpy(buffer, self.text.data() + self.place, count);
            self.place += count;
            *bytesRead = static_cast<uint32_t>(count);
            return count == 0 ? 1 : 0;
        };
    }

    std::string text;
    std::size_t place = 0;
};

constexpr std::array<UTXML_STRVALPAIR, 3> map{{{1, "a"}, {2, "b"}, {3, "c"}}};

class TagReader : public testing::Test {
protected:
    void TearDown() override { close(); }

    void open(const std::string& document) {
        close();
        faults.clear();
        Bytes stream(document);
        EXPECT_EQ(UTXMLInit(&reader, &stream), 0);
        EXPECT_EQ(UTXMLSetOption(&reader, 4, 1), 0);
        EXPECT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, map.data(), map.size()), 0);
        isOpen = true;
    }

    void close() {
        if (isOpen) {
            UTXMLDeInit(&reader);
        }
        isOpen = false;
    }

    // Returns "1" for the opening tag with that number, "/1" for the closing one, "text" or "end".
    std::string next() {
        uint64_t extra = 0;
        const int16_t status = UTXMLReadNextTag(&reader, &tag, &extra);
        if (status != 0) {
            return status == UTXML_CONTENT_PENDING ? "text" : "end";
        }
        const bool isClosing = (tag.flags & UTXML_CLOSING_TAG) != 0;
        const bool isUnknown = tag.id == UTXML_UNKNOWN_TAG;
        return (isClosing ? "/" : "") + (isUnknown ? "?" : std::to_string(tag.id));
    }

    std::vector<std::string> rest() {
        std::vector<std::string> found;
        while (found.empty() || found.back() != "end") {
            found.push_back(next());
        }
        return found;
    }

    // Returns "none" at the end of the text.
    std::u16string read(uint32_t capacity = 100) {
        std::u16string units(capacity, u'\0');
        uint32_t count = 0;
        auto* const buffer = reinterpret_cast<uint16_t*>(units.data());
        if (UTXMLReadContent(&reader, 1, buffer, capacity, &count) != 0) {
            return u"none";
        }
        units.resize(count);
        return units;
    }

    int16_t skip(const UTXMLTagRecord& opening) {
        uint64_t halves[2];
        std::memcpy(halves, &opening, sizeof halves);
        return UTXMLSkipTag(&reader, halves[0], halves[1]);
    }

    std::vector<std::u16string> attributes() {
        std::vector<std::u16string> found;
        uint32_t word = 0;
        uint32_t lengths[2];
        const uint16_t* texts[2];
        while (UTXMLGetNextAttribute(&reader, &word, &texts[0], &texts[1], &lengths[0],
                                     &lengths[1]) == 0) {
            EXPECT_EQ(lengths[0], UTXML_COUNT_IT);
            EXPECT_EQ(lengths[1], UTXML_COUNT_IT);
            found.emplace_back(reinterpret_cast<const char16_t*>(texts[0]));
            found.emplace_back(reinterpret_cast<const char16_t*>(texts[1]));
        }
        return found;
    }

    UTXMLReader reader = {};
    UTXMLTagRecord tag = {};
    bool isOpen = false;
};

TEST_F(TagReader, ReadsEveryElementAsAnOpeningAndAClosingTag) {
    open("<a><b/><x><c></c></x></a>");
    EXPECT_THAT(rest(), ElementsAre("1", "2", "/2", "?", "3", "/3", "/?", "/1", "end"));
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(TagReader, ReportsUnreadTextOnce) {
    open("<a><b>text</b></a>");
    EXPECT_THAT(rest(), ElementsAre("1", "2", "text", "/2", "/1", "end"));
}

TEST_F(TagReader, ReportsTextThatWasReadInPart) {
    open("<a>text</a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(3), u"tex");
    EXPECT_EQ(next(), "text");
    UTXMLSkipContent(&reader);
    EXPECT_EQ(read(), u"none");
    EXPECT_EQ(next(), "/1");
}

TEST_F(TagReader, DoesNotReportTextThatWasReadCompletely) {
    open("<a>text</a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(4), u"text");
    EXPECT_EQ(read(4), u"none");
    EXPECT_EQ(next(), "/1");
}

TEST_F(TagReader, TakesWhiteSpaceForTextOnlyBeforeTheElementsOwnClosingTag) {
    open("<a> \t\r\n<b> \n</b> </a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(), u"none");
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(read(), u" \n");
    EXPECT_EQ(next(), "/2");
    EXPECT_EQ(read(), u"none");
    EXPECT_EQ(next(), "/1");
}

TEST_F(TagReader, TakesLettersWithTheLowByteOfASpaceForText) {
    open("<a>\u0120\u0109<b/></a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(), u"\u0120\u0109");
}

TEST_F(TagReader, ReadsNoTextAfterAClosingTag) {
    open("<a>before<b/>after</a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(), u"before");
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(next(), "/2");
    EXPECT_EQ(read(), u"none");
    EXPECT_EQ(next(), "/1");
}

TEST_F(TagReader, SplitsASurrogatePairBetweenTwoReads) {
    open("<a>x\U0001F30Ay</a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(read(2), std::u16string({u'x', char16_t{0xD83C}}));
    EXPECT_EQ(read(2), std::u16string({char16_t{0xDF0A}, u'y'}));
}

TEST_F(TagReader, ReturnsAttributesInOrderAndThenNone) {
    open("<a x='' y='&lt;\U0001F30A'><b/></a>");
    EXPECT_EQ(next(), "1");
    EXPECT_THAT(attributes(), ElementsAre(u"x", u"", u"y", u"<\U0001F30A"));
    EXPECT_THAT(attributes(), IsEmpty());
    EXPECT_EQ(next(), "2");
    EXPECT_THAT(attributes(), IsEmpty());
}

TEST_F(TagReader, ReturnsNoAttributesOfAnEarlierTag) {
    open("<a x='y'><b x='y'/></a>");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(next(), "/2");
    EXPECT_THAT(attributes(), IsEmpty());
    EXPECT_EQ(next(), "/1");
    EXPECT_EQ(next(), "end");
    EXPECT_THAT(attributes(), IsEmpty());
}

TEST_F(TagReader, ReturnsNoAttributesAtTheEndOrAfterARestore) {
    tagUTXMLSaveData save = {};
    open("<a x='y'>");
    UTXMLGetStateInfo(&reader, &save);
    EXPECT_EQ(next(), "1");
    UTXMLRestoreStateInfo(&reader, &save);
    EXPECT_THAT(attributes(), IsEmpty());
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(next(), "end");
    EXPECT_THAT(attributes(), IsEmpty());
}

TEST_F(TagReader, LeavesTheRecordAsItWasAtTheEnd) {
    open("<a/>");
    EXPECT_THAT(rest(), ElementsAre("1", "/1", "end"));
    EXPECT_EQ(next(), "end");
    EXPECT_EQ(tag.id, 1);
    EXPECT_NE(tag.flags & UTXML_CLOSING_TAG, 0);
}

TEST_F(TagReader, LetsALaterRowReplaceAnEarlierOne) {
    constexpr UTXML_STRVALPAIR later = {9, "b"};
    open("<a><b/><c/></a>");
    EXPECT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, &later, 1), 0);
    EXPECT_THAT(rest(), ElementsAre("1", "9", "/9", "3", "/3", "/1", "end"));
}

TEST_F(TagReader, ClosesAnElementWithTheNumberOfItsOpeningTag) {
    constexpr UTXML_STRVALPAIR later[] = {{9, "b"}, {8, "x"}};
    open("<b><x/></b>");
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(next(), "?");
    EXPECT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, later, 2), 0);
    EXPECT_THAT(rest(), ElementsAre("/?", "/2", "end"));
}

TEST_F(TagReader, SkipsTheRestOfAnElementFromAnywhereInIt) {
    for (int tagsInside = 0; tagsInside < 4; ++tagsInside) {
        SCOPED_TRACE(tagsInside);
        open("<a><b>t<c><c/></c></b><c/></a>");
        next();
        next();
        const UTXMLTagRecord opening = tag;
        UTXMLSkipContent(&reader);
        for (int i = 0; i < tagsInside; ++i) {
            next();
        }
        EXPECT_EQ(skip(opening), 0);
        EXPECT_EQ(read(), u"none");
        EXPECT_THAT(rest(), ElementsAre("3", "/3", "/1", "end"));
    }
}

TEST_F(TagReader, RefusesToSkipAnElementThatIsClosed) {
    open("<a><b/><c/></a>");
    next();
    next();
    const UTXMLTagRecord opening = tag;
    next();
    EXPECT_NE(skip(opening), 0);
    EXPECT_NE(skip(tag), 0);
    EXPECT_EQ(next(), "3");
}

TEST_F(TagReader, RefusesToSkipAnElementThatNeverCloses) {
    open("<a><b><c/>");
    next();
    next();
    EXPECT_NE(skip(tag), 0);
    EXPECT_EQ(next(), "end");
}

TEST_F(TagReader, RestoresAStateOfAnotherReader) {
    const std::string document = "<a><b>first</b>\n<b>second</b></a>";
    tagUTXMLSaveData save = {};
    open(document);
    for (const char* expected : {"1", "2", "text", "/2"}) {
        EXPECT_EQ(next(), expected);
    }
    EXPECT_EQ(UTXMLGetStateInfo(&reader, &save), 0);

    open(document);
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(UTXMLRestoreStateInfo(&reader, &save), 0);
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(read(), u"second");
    EXPECT_THAT(rest(), ElementsAre("/2", "/1", "end"));
}

TEST_F(TagReader, RestoresAStateInTheMiddleOfAText) {
    tagUTXMLSaveData save = {};
    open("<a>text</a>");
    next();
    EXPECT_EQ(read(2), u"te");
    UTXMLGetStateInfo(&reader, &save);
    EXPECT_EQ(next(), "text");
    EXPECT_EQ(next(), "/1");
    UTXMLRestoreStateInfo(&reader, &save);
    EXPECT_EQ(read(), u"xt");
    EXPECT_EQ(next(), "/1");
}

TEST_F(TagReader, ReadsUpToAFaultAndReportsIt) {
    open("<a><b>te");
    EXPECT_EQ(next(), "1");
    EXPECT_EQ(next(), "2");
    EXPECT_EQ(read(), u"te");
    EXPECT_EQ(next(), "end");
    EXPECT_THAT(faults, ElementsAre("m.xml"));
}

TEST_F(TagReader, ReadsNoTagFromAnEmptyDocument) {
    open("");
    EXPECT_EQ(next(), "end");
    EXPECT_EQ(read(), u"none");
    EXPECT_THAT(faults, ElementsAre("m.xml"));
}

} // namespace

// What the reader needs from the rest of the example.
extern "C" {

int32_t fault(const char* what, const char* /*why*/) {
    faults.emplace_back(what);
    return -1;
}

void* need(void* block) {
    return block;
}

const char* nameOf(HostStream* /*source*/) {
    return "m.xml";
}
}
