#include <sys/resource.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/markup/MarkupParser.h"
#include "tests/host/markup/Puller.h"

namespace {

using olmtest::abc;
using olmtest::MemoryDocument;
using olmtest::Puller;

using Events = std::vector<std::string>;

const std::string whole =
    "<?xml version='1.0' encoding='UTF-8'?>\n<root n='1'> <a xml:space='preserve'>one &amp; "
    "t\xC3\xA9\xF0\x9F\x98\x80o</a><b/><!-- no --><c><d>x<e>y</e></d><f> </f><g><![CDATA[<]]>&#65;"
    "</g></c></root>\n";

// The last text may be truncated, and white space at the end is text, since no tag follows.
bool isPrefix(Events part, const Events& all) {
    std::string lastText;
    if (!part.empty() && part.back()[0] == '#') {
        lastText = part.back();
        part.pop_back();
    }
    const bool isSame =
        part.size() <= all.size() && std::equal(part.begin(), part.end(), all.begin());
    const bool isBlank = lastText.find_first_not_of(' ', 1) == std::string::npos;
    const bool isCut = part.size() < all.size() && all[part.size()].starts_with(lastText);
    return isSame && (isBlank || isCut);
}

TEST(HostileDocumentTest, EveryTruncationYieldsAPrefixAndAFault) {
    MemoryDocument complete(whole);
    Events all = olmtest::eventsOf(complete);
    ASSERT_TRUE(complete.faults.empty());
    all.pop_back();
    const std::size_t rootEnd = whole.rfind('>') + 1;

    for (std::size_t size = 0; size < whole.size(); ++size) {
        for (const std::uint32_t readSize : {1U, 2U, 5U, 65536U}) {
            MemoryDocument made(whole.substr(0, size), readSize);
            Events events = olmtest::eventsOf(made);
            ASSERT_EQ(events.back(), "end");
            events.pop_back();
            EXPECT_TRUE(isPrefix(events, all)) << "cut at " << size;
            EXPECT_EQ(made.faults.size(), size < rootEnd ? 1U : 0U) << "cut at " << size;
        }
    }
}

TEST(HostileDocumentTest, TextOfATruncatedElementIsReadUpToItsEnd) {
    const std::string document = "<a>textmore!";
    for (std::size_t size = 4; size <= document.size(); ++size) {
        MemoryDocument made(document.substr(0, size), 1);
        const Events events = olmtest::eventsOf(made);
        ASSERT_EQ(events.size(), 3U);
        EXPECT_EQ(events[0], "<1");
        EXPECT_EQ(events[1].substr(1), document.substr(3, size - 3));
        EXPECT_EQ(events[2], "end");
    }
}

// Replaces each byte by several others: parsing ends, with the same events for reads of any size.
TEST(HostileDocumentTest, EveryChangedByteEndsAndReadsTheSameInAnySize) {
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '<', '>', '&', ' ', 'x', '\xFF', '\''}) {
            std::string bytes = whole;
            bytes[at] = byte;
            MemoryDocument large(bytes);
            MemoryDocument small(bytes, 1);
            EXPECT_EQ(olmtest::eventsOf(large), olmtest::eventsOf(small, 3)) << at << byte;
            ASSERT_EQ(large.faults.size(), small.faults.size());
            if (!large.faults.empty()) {
                EXPECT_EQ(large.faults[0].text, small.faults[0].text);
            }
        }
    }
}

// A text of many MB, which is not held.
class LongDocument : public MemoryDocument {
public:
    explicit LongDocument(std::uint64_t textSize)
        : MemoryDocument("<root><a>"), textEnd(bytes.size() + textSize) {}

    std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) override {
        static const std::string tail = "</a><b>after</b></root>";
        auto* to = static_cast<char*>(buffer);
        for (count = 0; count < size && place < textEnd + tail.size(); ++count, ++place) {
            to[count] = place < bytes.size() ? bytes[place]
                        : place < textEnd    ? static_cast<char>('a' + place % 26)
                                             : tail[place - textEnd];
        }
        return count == 0 ? statusEnd : statusDone;
    }

private:
    std::uint64_t textEnd;
};

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST(HostileDocumentTest, ATextOf100MegabytesStreams) {
    constexpr std::uint64_t size = 100'000'000;
    LongDocument made(size);
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    puller.nextTag();
    const long before = peakKilobytes();
    std::vector<std::uint16_t> units(65536);
    std::uint64_t total = 0;
    std::uint32_t count = 0;
    while (UTXMLReadContent(&puller.reader, 1, units.data(), 65536, &count) == 0) {
        total += count;
    }
    EXPECT_EQ(total, size);
    EXPECT_EQ(puller.event(), "</1");
    EXPECT_EQ(puller.event(), "<2");
    EXPECT_EQ(puller.event(), "#after");
    EXPECT_LT(peakKilobytes() - before, 20000);
}

TEST(HostileDocumentTest, ATextOf100MegabytesIsSkippedInLittleMemory) {
    LongDocument made(100'000'000);
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    puller.nextTag();
    const long before = peakKilobytes();
    EXPECT_EQ(puller.nextTag(), 0);
    EXPECT_EQ(puller.tagText(), "</1");
    EXPECT_LT(peakKilobytes() - before, 20000);
}

TEST(HostileDocumentTest, LongTagsCostTimeInProportion) {
    std::string bytes = "<root x='" + std::string(8'000'000, 'y') + "'/>";
    MemoryDocument made(bytes, std::uint32_t{1} << 30);
    Puller puller(made);
    ASSERT_EQ(puller.nextTag(), 0);
    EXPECT_EQ(puller.attributes[0].second.size(), 8'000'000U);
    EXPECT_LT(made.reads, 30) << "chunks grow with what is incomplete";
}

} // namespace
