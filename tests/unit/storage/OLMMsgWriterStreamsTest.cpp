#include <deque>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filter/storage/OLMMsgWriter.h"
#include "tests/fakehost/FakeHost.h"
#include "tests/unit/RowName.h"
#include "tests/unit/core/Wide.h"
#include "tests/unit/storage/Thrown.h"

using namespace fakehost;
using testing::ElementsAre;

namespace {

class OLMMsgWriterStreamsTest : public testing::Test {
protected:
    // Returns a new stream in the root, named "s".
    HostStream* newStream() { return OLMMsgWriter::createSubStreamFromWString(root, "s"); }

    [[nodiscard]] Bytes written() const { return stored("s"); }
    [[nodiscard]] Bytes stored(const std::string& name) const {
        return host.message().stream(name);
    }

    FakeHost host;
    HostStream* root = host.newRoot();
};

// The texts of a multi-valued string, with the list of pointers that the writer takes.
struct TextList {
    explicit TextList(std::initializer_list<const char*> list) {
        for (const char* text : list) {
            texts.emplace_back(text);
            pointers.add(&texts.back());
        }
    }

    std::deque<qor::WString> texts;
    qor::ArrayList<qor::WString*> pointers;
};

// A parser positioned after the opening tag of an element with this text.
class ElementText {
public:
    ElementText(FakeHost& host, const Text& text) {
        host.entry("items.xml", document("notes").element("value", text));
        parser.emplace(host.openArchive(), 0);
        OLMXMLTag tag;
        EXPECT_EQ(parser->nextTag(tag), 1);
        EXPECT_EQ(parser->nextTag(tag), 1);
    }

    OLMXMLParser& operator*() { return *parser; }

private:
    std::optional<OLMXMLParser> parser;
};

} // namespace

TEST_F(OLMMsgWriterStreamsTest, NumbersAreLittleEndian) {
    HostStream* stream = newStream();

    OLMMsgWriter::writeWordProp(stream, 0x1234);
    OLMMsgWriter::writeDwordProp(stream, 0x89ABCDEF);
    OLMMsgWriter::writeQwordProp(stream, 0x0123456789ABCDEF);
    OLMMsgWriter::appendNulToStream(stream);

    EXPECT_EQ(written(), hex("34 12  EF CD AB 89  EF CD AB 89 67 45 23 01  00 00"));
}

struct NumberCase {
    const char* name;
    uint32_t size;
    void (*write)(HostStream* stream);
};

class OLMMsgWriterNumberTest : public OLMMsgWriterStreamsTest,
                               public testing::WithParamInterface<NumberCase> {};

TEST_P(OLMMsgWriterNumberTest, ShortWriteThrowsEvenWithoutAStatus) {
    HostStream* stream = newStream();
    host.shortenWrite(0, GetParam().size - 1, 0);

    EXPECT_EQ(thrownCode([&] { GetParam().write(stream); }), shortWriteCode);
}

TEST_P(OLMMsgWriterNumberTest, ShortWriteHasOneCodeWhateverTheStatus) {
    HostStream* stream = newStream();
    host.shortenWrite(0, 0, -7);

    EXPECT_EQ(thrownCode([&] { GetParam().write(stream); }), shortWriteCode);
}

TEST_P(OLMMsgWriterNumberTest, WholeWriteSucceedsWhateverTheStatus) {
    HostStream* stream = newStream();
    host.shortenWrite(0, GetParam().size, -7);

    EXPECT_EQ(thrownCode([&] { GetParam().write(stream); }), std::nullopt);
    EXPECT_TRUE(host.hasFailed());
}

TEST_P(OLMMsgWriterNumberTest, MissingStreamIsAShortWrite) {
    EXPECT_EQ(thrownCode([&] { GetParam().write(nullptr); }), shortWriteCode);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, OLMMsgWriterNumberTest,
    testing::Values(
        NumberCase{"Word", 2, [](HostStream* stream) { OLMMsgWriter::writeWordProp(stream, 1); }},
        NumberCase{"Dword", 4, [](HostStream* stream) { OLMMsgWriter::writeDwordProp(stream, 1); }},
        NumberCase{"Qword", 8, [](HostStream* stream) { OLMMsgWriter::writeQwordProp(stream, 1); }},
        NumberCase{"Nul", 2, [](HostStream* stream) { OLMMsgWriter::appendNulToStream(stream); }}),
    rowName);

TEST_F(OLMMsgWriterStreamsTest, EntryIsTagFlagsAndValue) {
    HostStream* stream = newStream();

    const unsigned int result =
        OLMMsgWriter::writeProperty(stream, {0x0037001F, 6, 0x1122334455667788});

    EXPECT_EQ(result, 0u);
    EXPECT_EQ(written(), hex("1F 00 37 00  06 00 00 00  88 77 66 55 44 33 22 11"));
}

TEST_F(OLMMsgWriterStreamsTest, ShortWriteInAnEntryIsItsResult) {
    const Bytes whole = hex("03 00 17 00  06 00 00 00  01 00 00 00 00 00 00 00");
    const size_t sizes[] = {1, 4 + 1, 8 + 1};

    for (int failing = 0; failing < 3; ++failing) {
        SCOPED_TRACE(testing::Message() << "write " << failing);
        HostStream* stream = newStream();
        host.shortenWrite(failing, 1, 0);

        EXPECT_EQ(OLMMsgWriter::writeProperty(stream, {0x00170003, 6, 1}), shortWriteCode);
        EXPECT_EQ(written(), whole.part(0, sizes[failing]));
    }
}

TEST_F(OLMMsgWriterStreamsTest, WriteOfBytesReturnsTheirCount) {
    const unsigned char bytes[] = {1, 0, 0xFF};
    HostStream* stream = newStream();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, bytes, 3), 3u);
    EXPECT_EQ(written(), hex("01 00 FF"));
}

TEST_F(OLMMsgWriterStreamsTest, ShortWriteOfBytesReturnsTheCountWritten) {
    const unsigned char bytes[] = {1, 2, 3};
    HostStream* stream = newStream();
    host.shortenWrite(0, 2, 0);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, bytes, 3), 2u);
}

TEST_F(OLMMsgWriterStreamsTest, ReportedFailureOfBytesReturnsZero) {
    const unsigned char bytes[] = {1, 2, 3};
    HostStream* stream = newStream();
    host.shortenWrite(0, 3, -7);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, bytes, 3), 0u);
}

TEST_F(OLMMsgWriterStreamsTest, TextHasTwoBytesPerUnitAndNoTerminator) {
    HostStream* stream = newStream();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, wide(u"a\u00E9\u20AC\U0001F600")), 10u);
    EXPECT_EQ(written(), hex("61 00 E9 00 AC 20 3D D8 00 DE"));
}

TEST_F(OLMMsgWriterStreamsTest, ZeroUnitDoesNotEndAText) {
    HostStream* stream = newStream();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, wide(std::u16string_view(u"a\0b", 3))), 6u);
    EXPECT_EQ(written(), hex("61 00 00 00 62 00"));
}

TEST_F(OLMMsgWriterStreamsTest, EmptyTextLeavesTheStreamEmpty) {
    HostStream* stream = newStream();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, qor::WString()), 0u);
    EXPECT_EQ(written(), Bytes());
}

TEST_F(OLMMsgWriterStreamsTest, ReportedFailureOfATextReturnsZero) {
    HostStream* stream = newStream();
    host.failCall(CallKind::Write, 0);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, "abc"), 0u);
}

class OLMMsgWriterLengthTest : public OLMMsgWriterStreamsTest,
                               public testing::WithParamInterface<size_t> {};

TEST_P(OLMMsgWriterLengthTest, ElementTextIsCopiedInChunks) {
    const std::u16string text = patternText(GetParam());
    ElementText element(host, text);
    HostStream* stream = newStream();
    host.forgetCalls();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, *element), 2 * GetParam());

    EXPECT_EQ(written(), utf16(text));
    EXPECT_EQ(static_cast<size_t>(host.countOf(CallKind::Write)), (GetParam() + 1023) / 1024);
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgWriterLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000));

TEST_F(OLMMsgWriterStreamsTest, FailedChunkIsNotCountedAndTheRestFollows) {
    const std::u16string text = patternText(3000);
    ElementText element(host, text);
    HostStream* stream = newStream();
    host.failCall(CallKind::Write, 1);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(stream, *element), 2u * (3000 - 1024));
    EXPECT_EQ(written(), utf16(text.substr(0, 1024) + text.substr(2048)));
}

TEST_F(OLMMsgWriterStreamsTest, TextOfATagHasItsOwnStreamAndCountsNoTerminator) {
    const int open = host.openHandles();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x0037001F, "Tide"), 8u);

    EXPECT_EQ(stored("__substg1.0_0037001F"), utf16(u"Tide"));
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterStreamsTest, TextOfATagWithoutStreamCountsNothing) {
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x0037001F, "Tide"), 0u);
    EXPECT_TRUE(host.message().paths().empty());
}

TEST_F(OLMMsgWriterStreamsTest, MultiValuedTextHasLengthsAndAStreamForEachValue) {
    const TextList list({"ab", "", "c"});
    const int open = host.openHandles();

    EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x3A58101F, list.pointers), 12u);

    EXPECT_THAT(host.message().paths(),
                ElementsAre("__substg1.0_3A58101F", "__substg1.0_3A58101F-00000000",
                            "__substg1.0_3A58101F-00000001", "__substg1.0_3A58101F-00000002"));
    EXPECT_EQ(stored("__substg1.0_3A58101F"), hex("06 00 00 00  02 00 00 00  04 00 00 00"));
    EXPECT_EQ(stored("__substg1.0_3A58101F-00000000"), hex("61 00 62 00 00 00"));
    EXPECT_EQ(stored("__substg1.0_3A58101F-00000001"), hex("00 00"));
    EXPECT_EQ(stored("__substg1.0_3A58101F-00000002"), hex("63 00 00 00"));
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterStreamsTest, MultiValuedTextWithoutValuesHasAnEmptyLengthStream) {
    const TextList list({});

    EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x3A58101F, list.pointers), 0u);

    EXPECT_THAT(host.message().paths(), ElementsAre("__substg1.0_3A58101F"));
    EXPECT_EQ(stored("__substg1.0_3A58101F"), Bytes());
}

TEST_F(OLMMsgWriterStreamsTest, ShortWriteInAMultiValuedTextReturnsZeroAndClosesItsStreams) {
    const TextList list({"ab", "c"});
    const int open = host.openHandles();

    // Each value is written in three steps: text, terminator, length. A short write of the text
    // does not end the list.
    for (const int failing : {1, 2, 4, 5}) {
        SCOPED_TRACE(testing::Message() << "write " << failing);
        host.shortenWrite(failing, 1, 0);

        EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x3A58101F, list.pointers), 0u);
        EXPECT_TRUE(host.hasFailed());
        EXPECT_EQ(host.openHandles(), open);
    }
}

TEST_F(OLMMsgWriterStreamsTest, MultiValuedTextWithoutALengthStreamReturnsZero) {
    const TextList list({"ab"});
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(OLMMsgWriter::writeStringProp(root, 0x3A58101F, list.pointers), 0u);
}

TEST_F(OLMMsgWriterStreamsTest, ValueStreamsAreNamedAfterTagAndIndex) {
    OLMMsgWriter::createSubStreamFromProp(root, 0x0037001F);
    OLMMsgWriter::createSubStreamFromProp(root, 0x3A58101F, 2);
    OLMMsgWriter::createSubStreamFromProp(root, 0xABCDEF00, 0xFEDCBA98);
    OLMMsgWriter::createSubStreamFromProp(root, 0x00000003);

    EXPECT_THAT(host.message().paths(),
                ElementsAre("__substg1.0_0037001F", "__substg1.0_3A58101F-00000002",
                            "__substg1.0_ABCDEF00-FEDCBA98", "__substg1.0_00000003"));
}

TEST_F(OLMMsgWriterStreamsTest, NamesAreTruncatedTo128Units) {
    const std::string name(130, 'n');

    OLMMsgWriter::createSubStreamFromWString(root, (name + "stream").c_str());
    OLMMsgWriter::createSubStorageFromWString(root, ("s" + name).c_str());

    EXPECT_THAT(host.message().paths(),
                ElementsAre(std::string(128, 'n'), "s" + std::string(127, 'n')));
}

TEST_F(OLMMsgWriterStreamsTest, NameOf128UnitsIsWhole) {
    const std::string name(128, 'n');

    OLMMsgWriter::createSubStreamFromWString(root, name.c_str());

    EXPECT_THAT(host.message().paths(), ElementsAre(name));
}

TEST_F(OLMMsgWriterStreamsTest, StoragesAndStreamsAreMadeWithTheirFlags) {
    host.forgetCalls();

    HostStream* storage = OLMMsgWriter::createSubStorageFromWString(root, "inner");
    OLMMsgWriter::createSubStreamFromWString(storage, "leaf");

    EXPECT_THAT(host.callsOf("IOCreate"),
                ElementsAre("IOCreate(34, \"inner\", 0x1012)", "IOCreate(33, \"inner/leaf\", 18)"));
    EXPECT_THAT(host.message().paths(), ElementsAre("inner", "inner/leaf"));
}

TEST_F(OLMMsgWriterStreamsTest, StorageThatCannotBeMadeThrowsTheHostsStatus) {
    host.failCall(CallKind::CreateStorage, 0, -42);

    const auto code = thrownCode([&] { OLMMsgWriter::createSubStorageFromWString(root, "x"); });

    EXPECT_EQ(code, static_cast<unsigned int>(-42));
}

TEST_F(OLMMsgWriterStreamsTest, StreamThatCannotBeMadeIsNull) {
    host.failCall(CallKind::CreateStream, 0, -42);

    EXPECT_EQ(OLMMsgWriter::createSubStreamFromWString(root, "x"), nullptr);
}

TEST_F(OLMMsgWriterStreamsTest, NothingIsMadeInAStorageThatIsNotThere) {
    host.forgetCalls();

    EXPECT_EQ(OLMMsgWriter::createSubStreamFromWString(nullptr, "x"), nullptr);
    EXPECT_EQ(thrownCode([] { OLMMsgWriter::createSubStorageFromWString(nullptr, "x"); }),
              0xFFFFFFFFu);
    EXPECT_TRUE(host.calls().empty());
}

struct DateCase {
    const char* name;
    const char* text;
    uint64_t time;
};

class OLMMsgWriterDateTest : public OLMMsgWriterStreamsTest,
                             public testing::WithParamInterface<DateCase> {};

TEST_P(OLMMsgWriterDateTest, TextIsConvertedToATime) {
    EXPECT_EQ(OLMMsgWriter::convertDateProp(GetParam().text), GetParam().time);
}

TEST_P(OLMMsgWriterDateTest, ElementIsConvertedToTheSameTime) {
    ElementText element(host, GetParam().text);

    EXPECT_EQ(OLMMsgWriter::convertDateProp(*element), GetParam().time);
}

// 2018-06-21T00:39:08Z is 1,529,541,548 seconds after 1970.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgWriterDateTest,
    testing::Values(DateCase{"Epoch", "1970-01-01T00:00:00Z", 116444735990000000},
                    DateCase{"Millisecond", "1970-01-01T00:00:00.001Z", 116444735990010000},
                    DateCase{"NoZone", "2018-06-21T00:39:08", 131740151470000000},
                    DateCase{"FirstSecond", "1601-01-01T00:00:01Z", 0},
                    DateCase{"NoDate", "soon", 0}),
    rowName);

TEST_F(OLMMsgWriterStreamsTest, DateOfAnElementWithoutTextIsZero) {
    ElementText element(host, "");

    EXPECT_EQ(OLMMsgWriter::convertDateProp(*element), 0u);
}
