#include "filter/storage/OLMMsgWriter.h"

#include <functional>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakehost/FakeHost.h"
#include "tests/fakehost/Matchers.h"
#include "tests/unit/RowName.h"
#include "tests/unit/storage/PropertyBytes.h"
#include "tests/unit/storage/Thrown.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// Ids of the elements below. Three have types that the generic handling takes.
enum : uint64_t {
    RootId = 5,
    ListId = 1,
    SpecialId = 2,
    StringId = 0x0037001F,
    TimeId = 0x30080040,
    IntegerId = 0x10900003,
    BinaryId = 0x10130102,
    BooleanId = 0x0E1F000B,
    DoubleId = 0x81020005,
    SecondStringId = 0x1000001F,
};

const UTXML_STRVALPAIR itemTags[] = {
    {BinaryId, "binary"},       {BooleanId, "boolean"}, {DoubleId, "double"},
    {IntegerId, "integer"},     {RootId, "item"},       {ListId, "list"},
    {SecondStringId, "second"}, {SpecialId, "special"}, {StringId, "string"},
    {TimeId, "time"},
};

// The base class with its members open, and with what item writers override left to the test.
class OpenWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    using OLMMsgWriter::createEmptyBinaryProp;
    using OLMMsgWriter::createEmptyStringProp;
    using OLMMsgWriter::createRequiredProps;
    using OLMMsgWriter::expectedProps;
    using OLMMsgWriter::handleCategories;
    using OLMMsgWriter::handledProps;
    using OLMMsgWriter::namedProps;
    using OLMMsgWriter::properties;
    using OLMMsgWriter::recipientCount;
    using OLMMsgWriter::rootStorage;
    using OLMMsgWriter::rootTag;
    using OLMMsgWriter::writeCategory;

    bool handleProp(OLMXMLTag& tag, OLMXMLParser& parser) override {
        offered.push_back(tag.id());
        return OLMMsgWriter::handleProp(tag, parser);
    }

    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override {
        if (tag.id() == ListId) {
            handleCategories(parser, ListId);
            return true;
        }
        return tag.id() == SpecialId || OLMMsgWriter::handlePropSpecial(tag, parser);
    }

    unsigned int writeMessageHeader(void* stream) override {
        if (onHeader) {
            onHeader();
        }
        return OLMMsgWriter::writeMessageHeader(stream);
    }

    unsigned int writeNamedProps(void* storage) override {
        const unsigned int result = OLMMsgWriter::writeNamedProps(storage);
        return namedPropsResult.value_or(result);
    }

    [[nodiscard]] std::vector<PropertyEntry> pending() const {
        std::vector<PropertyEntry> entries;
        for (int index = 0; index < properties.size(); ++index) {
            const MsgPropPair* pair = properties.get(index);
            entries.push_back({pair->tag, pair->flags, pair->value});
        }
        return entries;
    }

    std::vector<unsigned int> offered; // ids that reached handleProp
    std::function<void()> onHeader;
    std::optional<unsigned int> namedPropsResult;
};

class OLMMsgWriterTest : public testing::Test {
protected:
    OLMMsgWriterTest() { request.output = host.newOutput(); }

    // Opens a document and reads its root's opening tag.
    void openDocument(const ItemDocument& items) {
        host.entry("items.xml", items);
        parser.emplace(host.openArchive(), 0);
        ASSERT_EQ(parser->addTags(itemTags, std::size(itemTags)), 0);
        OLMXMLTag root;
        ASSERT_EQ(parser->nextTag(root), 1);
        writer.emplace(&request);
    }

    // Opens a document and begins the message of its first item.
    void begin(const ItemDocument& items) {
        openDocument(items);
        ASSERT_EQ(writer->initilizeWriter(*parser), 0u);
        writer->expectedProps = 50;
        host.forgetCalls();
    }

    // Writes the item's elements and returns the progress values.
    std::vector<int> run() {
        std::vector<int> progress;
        do {
            progress.push_back(writer->writeNode(*parser));
        } while (progress.back() != 100 && progress.size() < 1000);
        return progress;
    }

    [[nodiscard]] StoredMessage message() const { return host.message(request.output); }

    // Begins a message and writes the item's elements.
    void writeList(const ItemDocument& items) {
        begin(items);
        run();
    }

    FakeHost host;
    SODOSPECIALARC request{};
    std::optional<OLMXMLParser> parser;
    std::optional<OpenWriter> writer;
};

ItemDocument item() {
    return document("notes").open("item");
}

const Bytes messageClassId = hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46");

} // namespace

// --- Initialization.

TEST_F(OLMMsgWriterTest, ConstructionTouchesNoStorage) {
    const OpenWriter other(&request);

    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(other.recipientCount, 0);
    EXPECT_EQ(other.expectedProps, 1u);
    EXPECT_EQ(other.handledProps, 0u);
}

TEST_F(OLMMsgWriterTest, NamedPropertiesComeBeforeEverythingElse) {
    begin(item());
    writer->createRequiredProps("IPM.Note");

    EXPECT_EQ(message().classId(), messageClassId);
    EXPECT_THAT(message().paths(),
                ElementsAre("__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
                            "__nameid_version1.0/__substg1.0_00030102",
                            "__nameid_version1.0/__substg1.0_00040102", "__substg1.0_10090102",
                            "__substg1.0_001A001F"));
    EXPECT_EQ(writer->rootTag, RootId);
}

TEST_F(OLMMsgWriterTest, RootStorageThatCannotBeMadeEndsTheInitialization) {
    openDocument(item());
    host.failCall(CallKind::CreateRoot, 0);
    const int tagsRead = host.countOf(CallKind::ReadNextTag);

    EXPECT_EQ(writer->initilizeWriter(*parser), 0xFFFFFFFFu);

    EXPECT_EQ(host.countOf(CallKind::ReadNextTag), tagsRead);
    EXPECT_EQ(host.countOf(CallKind::CreateStorage), 0);
    EXPECT_EQ(host.countOf(CallKind::SetInfo), 0);
}

TEST_F(OLMMsgWriterTest, ItemWithoutATagThrowsAndKeepsItsStorages) {
    openDocument(document("notes").breakOff());

    EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), unknownCode);
    EXPECT_THAT(message().paths(), SizeIs(4));
    EXPECT_THAT(writer->pending(), IsEmpty());
}

TEST_F(OLMMsgWriterTest, ItemWithAnUnknownTagThrowsAndKeepsItsStorages) {
    openDocument(document("notes").element("stranger"));

    EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }), unknownCode);
    EXPECT_THAT(message().paths(), SizeIs(4));
    EXPECT_THAT(writer->pending(), IsEmpty());
}

TEST_F(OLMMsgWriterTest, NamedPropertyStorageThatCannotBeMadeThrowsTheHostsStatus) {
    openDocument(item());
    host.failCall(CallKind::CreateStorage, 0, -42);

    EXPECT_EQ(thrownCode([&] { writer->initilizeWriter(*parser); }),
              static_cast<unsigned int>(-42));
}

// --- Tag by tag.

TEST_F(OLMMsgWriterTest, ItemEndsAtItsRootTagWithoutCallingAHandler) {
    begin(item());

    EXPECT_THAT(run(), ElementsAre(100));
    EXPECT_THAT(writer->offered, IsEmpty());
}

TEST_F(OLMMsgWriterTest, ItemEndsAtTheDocumentsEnd) {
    begin(item().element("string", "a").breakOff());

    EXPECT_THAT(run(), ElementsAre(2, 2, 100));
}

TEST_F(OLMMsgWriterTest, ClosingTagsAreNotOffered) {
    begin(item().element("string", "a").element("special"));

    run();

    EXPECT_THAT(writer->offered, ElementsAre(StringId, SpecialId));
}

TEST_F(OLMMsgWriterTest, TagsInsideAnUnhandledElementAreOfferedOneByOne) {
    begin(item().open("stranger").element("string", "in").open("binary").element("time").close());

    run();

    EXPECT_THAT(writer->offered, ElementsAre(UTXML_UNKNOWN_TAG, StringId, BinaryId, TimeId));
    EXPECT_EQ(writer->handledProps, 2u);
    EXPECT_THAT(writer->pending(), ElementsAre(entry(StringId, 6), entry(TimeId, 0)));
}

TEST_F(OLMMsgWriterTest, ProgressIsThePercentageOfElementsHandled) {
    begin(item().element("special").element("stranger").element("string", "a").element("special"));
    writer->expectedProps = 7;

    EXPECT_THAT(run(), ElementsAre(14, 14, 14, 14, 28, 28, 42, 42, 100));
}

TEST_F(OLMMsgWriterTest, ItemIsCompleteAfterTheExpectedNumberOfElements) {
    begin(item().element("special").element("special").element("string", "unread"));
    writer->expectedProps = 2;

    EXPECT_THAT(run(), ElementsAre(50, 50, 100));
    EXPECT_EQ(writer->finalizeNode(*parser), 0u);
    EXPECT_THAT(message(), HasNoProperty(StringId));
}

struct ProgressCase {
    const char* name;
    uint32_t handled;
    uint32_t expected;
    int16_t progress;
};

class OLMMsgWriterProgressTest : public OLMMsgWriterTest,
                                 public testing::WithParamInterface<ProgressCase> {};

// Only the first closing tag: until there nothing is counted.
TEST_P(OLMMsgWriterProgressTest, ProgressIsTruncatedAndNotClamped) {
    begin(item().element("stranger"));
    writer->writeNode(*parser);
    writer->handledProps = GetParam().handled;
    writer->expectedProps = GetParam().expected;

    EXPECT_EQ(writer->writeNode(*parser), GetParam().progress);
}

// 100,000 is 0x186A0, whose low half is 0x86A0; 42,949,673 times 100 is 2^32 + 4.
INSTANTIATE_TEST_SUITE_P(Values, OLMMsgWriterProgressTest,
                         testing::Values(ProgressCase{"PastTheEnd", 3, 2, 150},
                                         ProgressCase{"RoundedDown", 2, 3, 66},
                                         ProgressCase{"SixteenBits", 1000, 1, -31072},
                                         ProgressCase{"ThirtyTwoBits", 42949673, 1, 4}),
                         rowName);

// --- Generic handling.

TEST_F(OLMMsgWriterTest, StringElementHasAStreamAndASizeWithTheTerminator) {
    begin(item().element("string", "Tide"));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(StringId, 10)));
    EXPECT_EQ(message().stream("__substg1.0_0037001F"), utf16(u"Tide"));
}

TEST_F(OLMMsgWriterTest, StringElementWithoutTextHasAnEmptyStreamAndTheSizeTwo) {
    begin(item().element("string"));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(StringId, 2)));
    EXPECT_EQ(message().stream("__substg1.0_0037001F"), Bytes());
}

TEST_F(OLMMsgWriterTest, StringElementWithoutAStreamIsLeftOutAndNotCounted) {
    begin(item().element("string", "lost").element("second", "kept"));
    host.failCall(CallKind::CreateStream, 0);

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(SecondStringId, 10)));
    EXPECT_EQ(writer->handledProps, 1u);
}

TEST_F(OLMMsgWriterTest, StreamsOfElementsAreClosedAtOnce) {
    begin(item().element("string", "Tide").element("second"));
    const int open = host.openHandles();

    run();

    EXPECT_EQ(host.countOf(CallKind::CreateStream), 2);
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterTest, TimeElementIsConverted) {
    begin(item().element("time", "1970-01-01T00:00:00Z"));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(TimeId, 116444735990000000)));
}

TEST_F(OLMMsgWriterTest, TimeElementWithoutTextIsZero) {
    begin(item().element("time"));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(TimeId, 0)));
    EXPECT_EQ(writer->handledProps, 1u);
}

struct IntegerCase {
    const char* name;
    const char* text;
    uint64_t value;
};

class OLMMsgWriterIntegerTest : public OLMMsgWriterTest,
                                public testing::WithParamInterface<IntegerCase> {};

TEST_P(OLMMsgWriterIntegerTest, IntegerElementHolds32BitsWithoutSignExtension) {
    begin(item().element("integer", GetParam().text));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(IntegerId, GetParam().value)));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgWriterIntegerTest,
    testing::Values(IntegerCase{"Plain", "12", 12}, IntegerCase{"Negative", "-5", 0xFFFFFFFB},
                    IntegerCase{"Exponent", "2.7E1", 27}, IntegerCase{"TooWide", "4294967297", 1},
                    IntegerCase{"NoNumber", "soon", 0}, IntegerCase{"Empty", "", 0}),
    rowName);

TEST_F(OLMMsgWriterTest, OtherTypesAreNotHandled) {
    begin(item()
              .element("binary", "a")
              .element("boolean", "1")
              .element("double", "1")
              .element("stranger", "a"));

    run();

    EXPECT_THAT(writer->offered, SizeIs(4));
    EXPECT_EQ(writer->handledProps, 0u);
    EXPECT_THAT(writer->pending(), IsEmpty());
    EXPECT_EQ(host.countOf(CallKind::CreateStream), 0);
}

TEST_F(OLMMsgWriterTest, RepeatedElementHasTwoEntriesAndTheLaterText) {
    begin(item().element("string", "first").element("string", "no"));

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(StringId, 12), entry(StringId, 6)));
    EXPECT_EQ(message().stream("__substg1.0_0037001F"), utf16(u"no"));
}

TEST_F(OLMMsgWriterTest, ShortWriteOfAStringCountsWhatWasWritten) {
    begin(item().element("string", "Tide"));
    host.shortenWrite(0, 3, 0);

    run();

    EXPECT_THAT(writer->pending(), ElementsAre(entry(StringId, 3 + 2)));
}

// --- The start of every message.

TEST_F(OLMMsgWriterTest, RequiredPropertiesComeInTheirOrder) {
    begin(item());
    const int open = host.openHandles();

    writer->createRequiredProps("IPM.Note");

    EXPECT_THAT(writer->pending(),
                ElementsAre(entry(0x10090102, 0), entry(0x001A001F, 18), entry(0x0E1F000B, 0),
                            entry(0x0FF70003, 0), entry(0x0FF40003, 2), entry(0x340D0003, 0x40E79),
                            entry(0x3FDE0003, 1200)));
    EXPECT_EQ(message().stream("__substg1.0_10090102"), Bytes());
    EXPECT_EQ(message().stream("__substg1.0_001A001F"), utf16(u"IPM.Note"));
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterTest, RequiredPropertyWithoutAStreamIsLeftOut) {
    for (const int failing : {0, 1}) {
        SCOPED_TRACE(testing::Message() << "stream " << failing);
        OpenWriter other(&request);
        other.rootStorage = host.newRoot();
        host.failCall(CallKind::CreateStream, failing);

        other.createRequiredProps("IPM.Note");

        const auto entries = other.pending();
        ASSERT_THAT(entries, SizeIs(6));
        EXPECT_EQ(entries.front().tag, failing == 0 ? 0x001A001Fu : 0x10090102u);
        EXPECT_EQ(entries.back(), entry(0x3FDE0003, 1200));
    }
}

TEST_F(OLMMsgWriterTest, EmptyPropertiesHaveAnEmptyStreamAndTheSizeOfTheirType) {
    begin(item());
    const int open = host.openHandles();

    writer->createEmptyBinaryProp(0x10130102);
    writer->createEmptyStringProp(0x003D001F);

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x10130102, 0), entry(0x003D001F, 2)));
    EXPECT_EQ(message().stream("__substg1.0_10130102"), Bytes());
    EXPECT_EQ(message().stream("__substg1.0_003D001F"), Bytes());
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterTest, EmptyPropertyWithoutAStreamIsLeftOut) {
    begin(item());
    host.failCall(CallKind::CreateStream, 0);
    writer->createEmptyBinaryProp(0x10130102);
    host.failCall(CallKind::CreateStream, 0);
    writer->createEmptyStringProp(0x003D001F);

    EXPECT_THAT(writer->pending(), IsEmpty());
}

// --- Categories.

TEST_F(OLMMsgWriterTest, CategoriesBecomeAMultiValuedString) {
    writeList(item()
                  .open("list")
                  .element("category")
                  .attribute("OPFCategoryCopyBackgroundColor", "r:0.63 g:0.26 b:0.80")
                  .attribute("OPFCategoryCopyName", "Family")
                  .element("category")
                  .attribute("OPFCategoryCopyName", "Sea")
                  .close()
                  .element("string", "beyond"));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 8), entry(StringId, 14)));
    EXPECT_EQ(message().stream("__substg1.0_8000101F"), hex("0E 00 00 00  08 00 00 00"));
    EXPECT_EQ(message().stream("__substg1.0_8000101F-00000000"), utf16(u"Family") + hex("00 00"));
    EXPECT_EQ(message().stream("__substg1.0_8000101F-00000001"), utf16(u"Sea") + hex("00 00"));
    EXPECT_EQ(writer->handledProps, 2u);
}

TEST_F(OLMMsgWriterTest, CategoryStreamsAreClosedWithTheList) {
    begin(item().open("list").element("category").attribute("OPFCategoryCopyName", "a"));
    const int open = host.openHandles();

    run();

    EXPECT_EQ(host.countOf(CallKind::CreateStream), 2);
    EXPECT_EQ(host.openHandles(), open);
}

TEST_F(OLMMsgWriterTest, ListWithoutAUsableTagHasAnEmptyLengthStream) {
    writeList(item()
                  .open("list")
                  .element("category")
                  .element("category")
                  .attribute("OPFCategoryCopyNames", "a")
                  .element("category")
                  .attribute("opfCategoryCopyName", "a")
                  .close());

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 0)));
    EXPECT_EQ(message().stream("__substg1.0_8000101F"), Bytes());
    EXPECT_FALSE(message().has("__substg1.0_8000101F-00000000"));
}

TEST_F(OLMMsgWriterTest, EmptyListHasAnEmptyLengthStream) {
    writeList(item().element("list"));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 0)));
    EXPECT_EQ(message().stream("__substg1.0_8000101F"), Bytes());
}

TEST_F(OLMMsgWriterTest, CategoryWithAnEmptyNameIsAnEmptyValue) {
    writeList(item().open("list").element("category").attribute("OPFCategoryCopyName", ""));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 4)));
    EXPECT_EQ(message().stream("__substg1.0_8000101F"), hex("02 00 00 00"));
    EXPECT_EQ(message().stream("__substg1.0_8000101F-00000000"), hex("00 00"));
}

TEST_F(OLMMsgWriterTest, FirstOfTwoNamesOfACategoryIsUsed) {
    writeList(item()
                  .open("list")
                  .element("category")
                  .attribute("OPFCategoryCopyName", "one")
                  .attribute("OPFCategoryCopyName", "two"));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 4)));
    EXPECT_EQ(message().stream("__substg1.0_8000101F-00000000"), utf16(u"one") + hex("00 00"));
}

TEST_F(OLMMsgWriterTest, CategoryInsideATagOfAnyNameCountsToo) {
    writeList(item()
                  .open("list")
                  .open("string")
                  .attribute("OPFCategoryCopyName", "a")
                  .element("stranger")
                  .attribute("OPFCategoryCopyName", "b"));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 8)));
}

TEST_F(OLMMsgWriterTest, ListEndsAfterATagOfItsOwnKind) {
    writeList(item()
                  .open("list")
                  .open("list")
                  .attribute("OPFCategoryCopyName", "inner")
                  .element("category")
                  .attribute("OPFCategoryCopyName", "after"));

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 4)));
}

TEST_F(OLMMsgWriterTest, ListEndsWithTheDocumentAndRepeatsNoCategory) {
    begin(item().open("list").open("category").attribute("OPFCategoryCopyName", "last").breakOff());

    EXPECT_THAT(run(), ElementsAre(2, 100));
    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 4)));
}

TEST_F(OLMMsgWriterTest, TwoListsAreTwoProperties) {
    writeList(item()
                  .open("list")
                  .element("category")
                  .attribute("OPFCategoryCopyName", "a")
                  .close()
                  .open("list")
                  .element("category")
                  .attribute("OPFCategoryCopyName", "b")
                  .close());

    EXPECT_THAT(writer->pending(), ElementsAre(entry(0x8000101F, 4), entry(0x8001101F, 4)));
    EXPECT_EQ(message().stream("__substg1.0_8001101F-00000000"), utf16(u"b") + hex("00 00"));
}

TEST_F(OLMMsgWriterTest, CategoryReturnsItsSizeWithTheTerminator) {
    begin(item());

    EXPECT_EQ(writer->writeCategory(0x8000101F, 2, "abc"), 8u);
    EXPECT_EQ(message().stream("__substg1.0_8000101F-00000002"), utf16(u"abc") + hex("00 00"));
}

TEST_F(OLMMsgWriterTest, CategoryThatCannotBeWrittenThrowsAndClosesItsStreams) {
    struct Failure {
        CallKind kind;
        int k;
    };
    // In turn: the stream of lengths, the value's stream, the value's terminator, its length.
    for (const Failure failure :
         {Failure{CallKind::CreateStream, 0}, Failure{CallKind::CreateStream, 1},
          Failure{CallKind::Write, 1}, Failure{CallKind::Write, 2}}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(failure.kind) << ", " << failure.k);
        FakeHost ownHost;
        SODOSPECIALARC ownRequest{};
        ownRequest.output = ownHost.newOutput();
        ownHost.entry(
            "items.xml",
            item().open("list").element("category").attribute("OPFCategoryCopyName", "a"));
        OLMXMLParser ownParser(ownHost.openArchive(), 0);
        ownParser.addTags(itemTags, std::size(itemTags));
        OLMXMLTag root;
        ownParser.nextTag(root);
        OpenWriter ownWriter(&ownRequest);
        ownWriter.initilizeWriter(ownParser);
        const int open = ownHost.openHandles();
        ownHost.failCall(failure.kind, failure.k);

        EXPECT_EQ(thrownCode([&] { ownWriter.writeNode(ownParser); }), shortWriteCode);
        EXPECT_EQ(ownHost.openHandles(), open);
    }
}

// --- The end.

TEST_F(OLMMsgWriterTest, PropertyStreamIsHeaderAndEntriesInOrderOfAddition) {
    begin(item());
    writer->addProperty(0x340D0003, 7);
    writer->addProperty(0x001A001F, 0x1122334455667788);
    writer->addProperty(0x340D0003, 8);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(message().stream("__properties_version1.0"),
              headerBytes(0, 0) + entryBytes(0x340D0003, 7) +
                  entryBytes(0x001A001F, 0x1122334455667788) + entryBytes(0x340D0003, 8));
}

TEST_F(OLMMsgWriterTest, HeaderHoldsTheRecipientsTwiceAndNoAttachments) {
    begin(item());
    writer->recipientCount = 0x01020304;

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(message().stream("__properties_version1.0"),
              hex("00 00 00 00 00 00 00 00  04 03 02 01 00 00 00 00"
                  "04 03 02 01 00 00 00 00  00 00 00 00 00 00 00 00"));
}

TEST_F(OLMMsgWriterTest, EntryAddedWithTheHeaderIsNotWritten) {
    begin(item());
    writer->addProperty(0x340D0003, 7);
    writer->onHeader = [this] { writer->addProperty(0x340D0003, 8); };

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(message().stream("__properties_version1.0"),
              headerBytes(0, 0) + entryBytes(0x340D0003, 7));
}

TEST_F(OLMMsgWriterTest, PropertyStreamThatCannotBeMadeIsLeftOutAndNamedPropertiesFollow) {
    begin(item());
    writer->addProperty(writer->namedProps.mapNamedProp(0x8B000003), 3);
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_FALSE(message().has("__properties_version1.0"));
    EXPECT_EQ(message().stream("__nameid_version1.0/__substg1.0_00030102"),
              hex("00 8B 00 00 06 00 00 00"));
}

class OLMMsgWriterShortWriteTest : public OLMMsgWriterTest,
                                   public testing::WithParamInterface<int> {};

// The header has eight numbers; two entries with tag, flags and value follow.
TEST_P(OLMMsgWriterShortWriteTest, EndsThePropertyStreamButNotTheNamedProperties) {
    const Bytes whole = headerBytes(0, 0) + entryBytes(0x80000003, 3) + entryBytes(0x00170003, 1);
    const size_t starts[] = {0, 4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 48, 52, 56};
    const size_t start = starts[GetParam()];
    begin(item());
    writer->addProperty(writer->namedProps.mapNamedProp(0x8B000003), 3);
    writer->addProperty(0x00170003, 1);
    const int open = host.openHandles();
    host.shortenWrite(GetParam(), 2, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(message().stream("__properties_version1.0"), whole.part(0, start + 2));
    EXPECT_EQ(message().stream("__nameid_version1.0/__substg1.0_00030102"),
              hex("00 8B 00 00 06 00 00 00"));
    EXPECT_EQ(host.openHandles(), open + 1) << "one bucket stream";
}

INSTANTIATE_TEST_SUITE_P(Writes, OLMMsgWriterShortWriteTest, testing::Range(0, 14));

TEST_F(OLMMsgWriterTest, HeaderReturnsTheCodeOfAShortWrite) {
    begin(item());
    HostStream* stream = OLMMsgWriter::createSubStreamFromWString(writer->rootStorage, "s");
    host.shortenWrite(2, 0, -7);

    EXPECT_EQ(writer->writeMessageHeader(stream), shortWriteCode);
    stream->close(stream);
}

TEST_F(OLMMsgWriterTest, FailureOfTheNamedPropertiesIsTheResult) {
    begin(item());
    writer->namedPropsResult = 1;

    EXPECT_EQ(writer->finalizeNode(*parser), 461u);
    EXPECT_EQ(message().stream("__properties_version1.0"), headerBytes(0, 0));
}

TEST_F(OLMMsgWriterTest, ExceptionOfTheNamedPropertiesIsThrown) {
    begin(item());
    writer->namedProps.mapNamedProp(0x8B000003);
    host.shortenWrite(8, 0, 0);

    EXPECT_EQ(thrownCode([&] { writer->finalizeNode(*parser); }), shortWriteCode);
    EXPECT_EQ(message().stream("__properties_version1.0"), headerBytes(0, 0));
}

TEST_F(OLMMsgWriterTest, IndexOfPendingEntriesIsChecked) {
    const OpenWriter other(&request);

    EXPECT_EQ(thrownCode([&] { other.properties.get(0); }), qor::errorIndex);
}

TEST_F(OLMMsgWriterTest, RootIsClosedBeforeTheNamedProperties) {
    begin(item());
    ASSERT_EQ(writer->finalizeNode(*parser), 0u);
    host.forgetCalls();

    writer.reset();

    EXPECT_THAT(host.callsOf("close"),
                ElementsAre("close(root)", "close(__nameid_version1.0/__substg1.0_00020102)",
                            "close(__nameid_version1.0/__substg1.0_00030102)",
                            "close(__nameid_version1.0/__substg1.0_00040102)",
                            "close(__nameid_version1.0)"));
    EXPECT_TRUE(message().isRootClosed());
}
