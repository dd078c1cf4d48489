#include "filter/writers/OLMMsgContactGrpWriter.h"

#include <typeinfo>

#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/WriterFrame.h"

using namespace fakehost;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* memberList = "OPFGroupCopyMemberList";
const Bytes addressSet = hex("04 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");

// The bytes of an identifier before its texts (MS-OXCDATA 2.2.5.1).
const Bytes oneOffStart = hex("00 00 00 00  81 2B 1F A4 BE A3 10 19 9D 6E 00 DD 01 0F 54 02"
                              "00 00  01 80");

Bytes entryId(std::u16string_view name, std::u16string_view type, std::u16string_view address) {
    return oneOffStart + terminated(name) + terminated(type) + terminated(address);
}

// Returns an entry of a stream of sizes.
Bytes sizeEntry(uint32_t size) {
    return le32(size) + le32(0);
}

// Returns a group whose member list is open.
ItemDocument openList() {
    return group().open(memberList);
}

ItemDocument& addMember(ItemDocument& item, const Text& name, const Text& address,
                        const Text& type = "0") {
    return item.element("emailAddress")
        .attribute(addressAttribute, address)
        .attribute(nameAttribute, name)
        .attribute(typeAttribute, type);
}

ItemDocument groupOf(const Text& name, const Text& address, const Text& type = "0") {
    ItemDocument item = openList();
    return addMember(item, name, address, type);
}

// Returns a group of `count` different members.
ItemDocument groupOfSize(int count) {
    ItemDocument item = openList();
    for (int number = 0; number < count; ++number) {
        const std::string text = std::to_string(number);
        addMember(item, "Member " + text, "member" + text + "@sea.example");
    }
    return item;
}

// Expects these members in both properties of a message without other named properties.
void expectMembers(const StoredMessage& message, const std::vector<Bytes>& members) {
    Bytes sizes;
    for (size_t index = 0; index < members.size(); ++index) {
        SCOPED_TRACE(testing::Message() << "member " << index);
        const auto number = static_cast<unsigned int>(index);
        EXPECT_EQ(message.stream(valueStream(0x80001102, number)), members[index]);
        EXPECT_EQ(message.stream(valueStream(0x80011102, number)), members[index]);
        sizes = sizes + sizeEntry(static_cast<uint32_t>(members[index].size()));
    }
    const auto next = static_cast<unsigned int>(members.size());
    EXPECT_FALSE(message.has(valueStream(0x80001102, next)));
    EXPECT_FALSE(message.has(valueStream(0x80011102, next)));
    EXPECT_EQ(message.stream("__substg1.0_80001102"), sizes);
    EXPECT_EQ(message.stream("__substg1.0_80011102"), sizes);
    EXPECT_THAT(message, HasNumber(0x80001102, 8 * members.size()));
    EXPECT_THAT(message, HasNumber(0x80011102, 8 * members.size()));
}

class OpenGroupWriter : public OpenWriter<OLMMsgContactGrpWriter> {
public:
    using OpenWriter::OpenWriter;

    using OLMMsgContactGrpWriter::writeOneOffEntryId;
};

class OLMMsgContactGrpWriterObjectTest : public WriterTest<OpenGroupWriter> {};

// Writes an identifier to a stream of its own.
class OLMMsgContactGrpWriterEntryIdTest : public testing::Test {
protected:
    OLMMsgContactGrpWriterEntryIdTest()
        : stream(OLMMsgWriter::createSubStreamFromWString(host.newRoot(), "id")) {
        data.displayName = "Ann";
        data.address = "ann@sea";
    }

    unsigned int write() { return OpenGroupWriter::writeOneOffEntryId(stream, data); }
    [[nodiscard]] Bytes written() const { return host.message().stream("id"); }

    FakeHost host;
    HostStream* stream;
    OneOffEntryIdData data;
};

} // namespace

// --- The writer itself.

TEST_F(OLMMsgContactGrpWriterObjectTest, MemberIsWrittenToBothPropertiesInTurn) {
    begin(groupOf("", "a@x"));

    writer->writeNode(*parser);

    std::vector<std::string> expected = {"IOCreate(33, \"__substg1.0_80001102\", 18)",
                                         "IOCreate(33, \"__substg1.0_80011102\", 18)"};
    for (const std::string tag : {"80001102", "80011102"}) {
        const std::string value = "__substg1.0_" + tag + "-00000000";
        expected.push_back("IOCreate(33, \"" + value + "\", 18)");
        for (const int size : {4, 16, 2, 2, 0, 2, 8, 2, 6, 2}) {
            expected.push_back("write(" + value + ", " + std::to_string(size) + ")");
        }
        expected.push_back("write(__substg1.0_" + tag + ", 4)");
        expected.push_back("write(__substg1.0_" + tag + ", 4)");
        expected.push_back("close(" + value + ")");
    }
    expected.emplace_back("close(__substg1.0_80001102)");
    expected.emplace_back("close(__substg1.0_80011102)");
    std::vector<std::string> storing;
    for (const HostCall& call : host.calls()) {
        if (call.kind == CallKind::CreateStream || call.kind == CallKind::Write ||
            call.kind == CallKind::Close) {
            storing.push_back(call.text);
        }
    }
    EXPECT_THAT(storing, testing::ElementsAreArray(expected));
    EXPECT_EQ(host.openHandles(), openBefore);
}

// --- The identifier, byte for byte.

TEST_F(OLMMsgContactGrpWriterEntryIdTest, PersonIsReachedBySmtp) {
    EXPECT_EQ(write(), 58u);

    EXPECT_EQ(written(), hex("00 00 00 00"
                             "81 2B 1F A4 BE A3 10 19 9D 6E 00 DD 01 0F 54 02"
                             "00 00"
                             "01 80"
                             "41 00 6E 00 6E 00 00 00"
                             "53 00 4D 00 54 00 50 00 00 00"
                             "61 00 6E 00 6E 00 40 00 73 00 65 00 61 00 00 00"));
}

TEST_F(OLMMsgContactGrpWriterEntryIdTest, TypeThreeIsADistributionList) {
    data.displayName = "Deck";
    data.address = "d@x";
    data.addressType = 3;

    EXPECT_EQ(write(), 58u);

    EXPECT_EQ(written(), hex("00 00 00 00"
                             "81 2B 1F A4 BE A3 10 19 9D 6E 00 DD 01 0F 54 02"
                             "00 00"
                             "01 80"
                             "44 00 65 00 63 00 6B 00 00 00"
                             "4D 00 41 00 50 00 49 00 50 00 44 00 4C 00 00 00"
                             "64 00 40 00 78 00 00 00"));
}

TEST_F(OLMMsgContactGrpWriterEntryIdTest, EmptyTextsAreTheirTerminators) {
    data = OneOffEntryIdData();

    EXPECT_EQ(write(), 38u);

    EXPECT_EQ(written(), hex("00 00 00 00"
                             "81 2B 1F A4 BE A3 10 19 9D 6E 00 DD 01 0F 54 02"
                             "00 00"
                             "01 80"
                             "00 00"
                             "53 00 4D 00 54 00 50 00 00 00"
                             "00 00"));
}

// The writes have 4, 16, 2 and 2 bytes; each text and its terminator of 2 bytes follow.
TEST_F(OLMMsgContactGrpWriterEntryIdTest, FailedWriteIsMissingFromTheSize) {
    struct Case {
        int write;
        unsigned int size;
    };
    for (const auto& [failing, size] :
         {Case{1, 58 - 16}, Case{4, 58 - 6}, Case{6, 58 - 8}, Case{8, 58 - 14}}) {
        SCOPED_TRACE(testing::Message() << "failing write " << failing);
        host.failCall(CallKind::Write, failing);

        EXPECT_EQ(write(), size);
    }
}

TEST_F(OLMMsgContactGrpWriterEntryIdTest, ShortWriteOfATextCountsWhatWasWritten) {
    host.shortenWrite(4, 2, 0);

    EXPECT_EQ(write(), 54u);
    EXPECT_EQ(written(),
              oneOffStart + terminated(u"A") + terminated(u"SMTP") + terminated(u"ann@sea"));
}

TEST_F(OLMMsgContactGrpWriterEntryIdTest, ShortNumberOrTerminatorThrows) {
    for (const int failing : {0, 2, 3, 5, 7, 9}) {
        SCOPED_TRACE(testing::Message() << "short write " << failing);
        host.shortenWrite(failing, 1, 0);

        EXPECT_EQ(thrownCode([&] { write(); }), shortWriteCode);
    }
}

// --- Whole messages.

TEST(OLMMsgContactGrpWriterTest, FullGroupIsWrittenInDocumentOrder) {
    const StoredMessage message = writeItem(fullGroup());

    EXPECT_THAT(
        message.paths(),
        ElementsAre(
            "__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
            "__nameid_version1.0/__substg1.0_00030102", "__nameid_version1.0/__substg1.0_00040102",
            "__substg1.0_10090102", "__substg1.0_001A001F", "__substg1.0_8000101F",
            "__substg1.0_8000101F-00000000", "__substg1.0_0037001F", "__substg1.0_8001001F",
            "__substg1.0_80021102", "__substg1.0_80031102", "__substg1.0_80021102-00000000",
            "__substg1.0_80031102-00000000", "__substg1.0_80021102-00000001",
            "__substg1.0_80031102-00000001", "__substg1.0_1000001F", "__properties_version1.0",
            "__nameid_version1.0/__substg1.0_10150102", "__nameid_version1.0/__substg1.0_10180102",
            "__nameid_version1.0/__substg1.0_10160102"));
    // The time is 131740151470000000.
    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(groupKind) + hex("1F 10 00 80  06 00 00 00  04 00 00 00 00 00 00 00"
                                           "1F 00 37 00  06 00 00 00  0A 00 00 00 00 00 00 00"
                                           "1F 00 01 80  06 00 00 00  0A 00 00 00 00 00 00 00"
                                           "02 11 02 80  06 00 00 00  10 00 00 00 00 00 00 00"
                                           "02 11 03 80  06 00 00 00  10 00 00 00 00 00 00 00"
                                           "40 00 08 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                                           "1F 00 00 10  06 00 00 00  0C 00 00 00 00 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_10090102"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_001A001F"), utf16(u"IPM.DistList"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), le32(8));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Crew"));
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), utf16(u"Crew"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"Noon\n"));
    for (const uint32_t tag : {0x80021102U, 0x80031102U}) {
        EXPECT_EQ(message.stream(valueStream(tag)),
                  hex("32 00 00 00 00 00 00 00  3A 00 00 00 00 00 00 00"));
        EXPECT_EQ(message.stream(valueStream(tag, 0)), entryId(u"Ann", u"SMTP", u"a@x"));
        EXPECT_EQ(message.stream(valueStream(tag, 1)), entryId(u"Deck", u"MAPIPDL", u"d@x"));
    }
}

TEST(OLMMsgContactGrpWriterTest, FullGroupNamesItsProperties) {
    const StoredMessage message = writeItem(fullGroup());

    EXPECT_EQ(nameStream(message, "00020102"), addressSet);
    EXPECT_EQ(nameStream(message, "00030102"), hex("00 00 00 00  05 00  00 00"
                                                   "53 80 00 00  06 00  01 00"
                                                   "54 80 00 00  06 00  02 00"
                                                   "55 80 00 00  06 00  03 00"));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    // The category list's name and 0x8054 are in one bucket.
    EXPECT_EQ(nameStream(message, "10150102"), hex("3B 4D DA 2E  05 00  00 00"
                                                   "54 80 00 00  06 00  02 00"));
    EXPECT_EQ(nameStream(message, "10160102"), hex("55 80 00 00  06 00  03 00"));
    EXPECT_EQ(nameStream(message, "10180102"), hex("53 80 00 00  06 00  01 00"));
}

TEST(OLMMsgContactGrpWriterTest, ProgressCountsTheElementsHandled) {
    // Each with its closing tag, except the lists, which read theirs; the HTML notes do not count.
    EXPECT_THAT(extractItem(fullGroup()).progress,
                ElementsAre(14, 28, 28, 42, 57, 57, 57, 57, 71, 71, 100));
}

// --- The display name.

TEST(OLMMsgContactGrpWriterTest, DisplayNameIsTheSubjectAndANamedProperty) {
    const StoredMessage message = writeItem(group().element("OPFGroupCopyDisplayName", "Crew"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, 10), entry(0x8000001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Crew"));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), utf16(u"Crew"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("53 80 00 00  06 00  00 00"));
}

TEST(OLMMsgContactGrpWriterTest, EmptyDisplayNameIsTwoEmptyStreamsOfSizeTwo) {
    const StoredMessage message = writeItem(group().element("OPFGroupCopyDisplayName"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, 2), entry(0x8000001F, 2)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), Bytes());
}

TEST(OLMMsgContactGrpWriterTest, SecondDisplayNameIsAnotherNamedProperty) {
    const StoredMessage message = writeItem(group()
                                                .element("OPFGroupCopyDisplayName", "Crew")
                                                .element("OPFGroupCopyDisplayName", "Deck"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, 10), entry(0x8000001F, 10),
                                                 entry(0x0037001F, 10), entry(0x8001001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"Deck"));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), utf16(u"Crew"));
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), utf16(u"Deck"));
}

TEST_F(OLMMsgContactGrpWriterObjectTest, SubjectWithoutAStreamLosesOnlyItsProperty) {
    begin(group().element("OPFGroupCopyDisplayName", "Crew"));
    host.failCall(CallKind::CreateStream, 0);

    writer->writeNode(*parser);

    EXPECT_THAT(added(), ElementsAre(entry(0x8000001F, 10)));
    EXPECT_FALSE(message().has("__substg1.0_0037001F"));
}

namespace {

// The parameter is the rejected tag.
class OLMMsgContactGrpWriterRefusalTest : public OLMMsgContactGrpWriterObjectTest,
                                          public testing::WithParamInterface<unsigned int> {};

INSTANTIATE_TEST_SUITE_P(Tags, OLMMsgContactGrpWriterRefusalTest,
                         testing::Values(0x0037001F, 0x8000001F));

} // namespace

TEST_P(OLMMsgContactGrpWriterRefusalTest, UnknownPropertyEndsTheDisplayNameAndCountsAsHandled) {
    begin(group().element("OPFGroupCopyDisplayName", "Crew"));
    writer->refusedTag = GetParam();
    writer->refusal = unknownCode;

    EXPECT_EQ(writer->writeNode(*parser), 14);

    EXPECT_EQ(writer->handledProps, 1u);
    const bool hasSubject = GetParam() == 0x8000001F;
    EXPECT_THAT(added(), SizeIs(hasSubject ? 1 : 0));
    // What follows the failure is not written.
    EXPECT_EQ(message().has("__substg1.0_8000001F"), hasSubject);
}

TEST_F(OLMMsgContactGrpWriterObjectTest, OtherFailureOfTheDisplayNameIsRethrownAsACopy) {
    begin(group().element("OPFGroupCopyDisplayName", "Crew"));
    writer->refusedTag = 0x8000001F;
    writer->refusal = 16;
    bool isThrown = false;

    try {
        writer->writeNode(*parser);
    } catch (const qor::Exception& failure) {
        isThrown = true;
        EXPECT_EQ(failure.code, 16u);
        EXPECT_EQ(typeid(failure), typeid(qor::Exception));
    }

    EXPECT_TRUE(isThrown);
    EXPECT_EQ(writer->handledProps, 0u);
    EXPECT_EQ(host.openHandles(), openBefore);
}

// --- The members.

TEST(OLMMsgContactGrpWriterTest, EmptyListIsTwoEmptyStreamsAndTwoPropertiesOfZero) {
    const StoredMessage message = writeItem(group().element(memberList));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x80001102, 0), entry(0x80011102, 0)));
    expectMembers(message, {});
}

TEST(OLMMsgContactGrpWriterTest, MemberWithoutContentCountsOnce) {
    const StoredMessage message = writeItem(groupOf("Ann", "a@x"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x80001102, 8), entry(0x80011102, 8)));
    expectMembers(message, {entryId(u"Ann", u"SMTP", u"a@x")});
}

TEST(OLMMsgContactGrpWriterTest, MembersAreInTheOrderOfTheList) {
    ItemDocument item = openList();
    addMember(item, "Zoe", "z@x");
    addMember(item, "Ann", "ann@sea.example");
    addMember(item, "Zoe", "z@x");

    expectMembers(writeItem(item),
                  {entryId(u"Zoe", u"SMTP", u"z@x"), entryId(u"Ann", u"SMTP", u"ann@sea.example"),
                   entryId(u"Zoe", u"SMTP", u"z@x")});
}

TEST(OLMMsgContactGrpWriterTest, MemberWithoutADisplayNameHasItsTypeAfterATerminator) {
    const StoredMessage message =
        writeItem(openList().element("emailAddress").attribute(addressAttribute, "a@x"));

    const Bytes value = message.stream("__substg1.0_80001102-00000000");
    EXPECT_EQ(value.part(24, 2), hex("00 00"));
    EXPECT_EQ(value.part(26, 10), terminated(u"SMTP"));
    expectMembers(message, {entryId(u"", u"SMTP", u"a@x")});
}

TEST(OLMMsgContactGrpWriterTest, EmptyAndMissingAttributesAreTheSame) {
    ItemDocument item = openList();
    addMember(item, "", "", "");
    item.element("emailAddress").element("emailAddress").attribute("stranger", "a@x");

    const Bytes nobody = entryId(u"", u"SMTP", u"");
    expectMembers(writeItem(item), {nobody, nobody, nobody});
}

TEST(OLMMsgContactGrpWriterTest, AttributeNamesAreExactAndTheFirstOfTwoIsUsed) {
    const StoredMessage message = writeItem(openList()
                                                .element("emailAddress")
                                                .attribute("OPFContactEmailAddressname", "case")
                                                .attribute("OPFContactEmailAddressNames", "longer")
                                                .attribute("OPFContactEmailAddressNam", "shorter")
                                                .attribute(typeAttribute, "3")
                                                .attribute(nameAttribute, "Ann")
                                                .attribute(addressAttribute, "a@x")
                                                .attribute(nameAttribute, "Bob")
                                                .attribute(typeAttribute, "0")
                                                .attribute(addressAttribute, "b@x"));

    expectMembers(message, {entryId(u"Ann", u"MAPIPDL", u"a@x")});
}

TEST(OLMMsgContactGrpWriterTest, EveryOpeningTagOfAnyNameIsAMember) {
    ItemDocument item = openList();
    item.open("emailAddress").attribute(nameAttribute, "outer");
    item.text("unread");
    item.element("OPFGroupCopyDisplayName", "not the group's name");
    item.element("stranger").attribute(addressAttribute, "s@x");
    item.open("group").close();
    item.close().close().element("OPFGroupCopyNotesPlain", "Noon");

    const StoredMessage message = writeItem(item);

    const Bytes nobody = entryId(u"", u"SMTP", u"");
    expectMembers(message,
                  {entryId(u"outer", u"SMTP", u""), nobody, entryId(u"", u"SMTP", u"s@x"), nobody});
    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x80001102, 32), entry(0x80011102, 32), entry(0x1000001F, 10)));
}

TEST(OLMMsgContactGrpWriterTest, ListInsideAListIsTheLastMember) {
    ItemDocument item = groupOf("Ann", "a@x");
    item.open(memberList).attribute(nameAttribute, "inner");
    addMember(item, "Bob", "b@x");

    const StoredMessage message = writeItem(item);

    expectMembers(message, {entryId(u"Ann", u"SMTP", u"a@x"), entryId(u"inner", u"SMTP", u"")});
    EXPECT_THAT(ownEntries(message), SizeIs(2));
}

TEST(OLMMsgContactGrpWriterTest, SecondListIsTwoFurtherProperties) {
    ItemDocument item = groupOf("Ann", "a@x");
    item.close().open(memberList);
    addMember(item, "Bob", "b@x");

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x80001102, 8), entry(0x80011102, 8),
                                                 entry(0x80021102, 8), entry(0x80031102, 8)));
    EXPECT_EQ(message.stream("__substg1.0_80001102-00000000"), entryId(u"Ann", u"SMTP", u"a@x"));
    EXPECT_EQ(message.stream("__substg1.0_80021102-00000000"), entryId(u"Bob", u"SMTP", u"b@x"));
    EXPECT_EQ(message.stream("__substg1.0_80031102-00000000"), entryId(u"Bob", u"SMTP", u"b@x"));
}

TEST(OLMMsgContactGrpWriterTest, ValuesAreNumberedInHexadecimal) {
    const StoredMessage message = writeItem(groupOfSize(300));

    EXPECT_EQ(message.stream("__substg1.0_80001102-0000000A"),
              entryId(u"Member 10", u"SMTP", u"member10@sea.example"));
    EXPECT_EQ(message.stream("__substg1.0_80011102-0000012B"),
              entryId(u"Member 299", u"SMTP", u"member299@sea.example"));
    EXPECT_THAT(message, HasNumber(0x80001102, 2400));
}

TEST(OLMMsgContactGrpWriterTest, NumberOfCallsIsProportionalToTheMembers) {
    const int ofOne = countHostCalls(groupOfSize(1));
    const int eachFurther = countHostCalls(groupOfSize(2)) - ofOne;

    EXPECT_GT(eachFurther, 0);
    EXPECT_EQ(countHostCalls(groupOfSize(100)), ofOne + 99 * eachFurther);
    EXPECT_EQ(countHostCalls(groupOfSize(1000)), ofOne + 999 * eachFurther);
}

// --- The address type.

namespace {

struct MemberTypeCase {
    const char* name;
    const char* text;
    std::u16string type;
};

class OLMMsgContactGrpWriterTypeTest : public testing::TestWithParam<MemberTypeCase> {};

} // namespace

TEST_P(OLMMsgContactGrpWriterTypeTest, BecomesTheAddressType) {
    const StoredMessage message = writeItem(groupOf("Ann", "a@x", GetParam().text));

    expectMembers(message, {entryId(u"Ann", GetParam().type, u"a@x")});
}

TEST(OLMMsgContactGrpWriterTest, MemberWithoutATypeIsReachedBySmtp) {
    const StoredMessage message = writeItem(openList()
                                                .element("emailAddress")
                                                .attribute(addressAttribute, "a@x")
                                                .attribute(nameAttribute, "Ann"));

    expectMembers(message, {entryId(u"Ann", u"SMTP", u"a@x")});
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgContactGrpWriterTypeTest,
    testing::Values(
        MemberTypeCase{"Zero", "0", u"SMTP"}, MemberTypeCase{"One", "1", u"SMTP"},
        MemberTypeCase{"Two", "2", u"SMTP"}, MemberTypeCase{"Three", "3", u"MAPIPDL"},
        MemberTypeCase{"Four", "4", u"SMTP"}, MemberTypeCase{"Empty", "", u"SMTP"},
        MemberTypeCase{"MinusThree", "-3", u"SMTP"}, MemberTypeCase{"Exponent", "3E0", u"MAPIPDL"},
        MemberTypeCase{"Fraction", "3.9", u"MAPIPDL"}, MemberTypeCase{"Spaces", "  3", u"MAPIPDL"},
        MemberTypeCase{"NoNumber", "three", u"SMTP"}, MemberTypeCase{"Thirty", "30", u"SMTP"},
        MemberTypeCase{"ThreeInTheLow32Bits", "4294967299", u"SMTP"}),
    rowName);

// --- Text of every length around the size of a chunk.

class OLMMsgContactGrpWriterLengthTest : public TextLengthTest {};

TEST_P(OLMMsgContactGrpWriterLengthTest, MemberIsWhole) {
    const StoredMessage message = writeItem(groupOf(text, text, "3"));

    expectMembers(message, {entryId(text, u"MAPIPDL", text)});
    EXPECT_EQ(message.stream("__substg1.0_80001102").dword(0), 30 + 4 * GetParam() + 14);
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgContactGrpWriterLengthTest, testing::ValuesIn(textLengths));

// --- A document that ends inside the list.

TEST(OLMMsgContactGrpWriterTest, ListCutAfterAnOpeningTagHasOneMoreMemberWithoutTexts) {
    ItemDocument item = openList();
    item.open("emailAddress").attribute(nameAttribute, "Ann").attribute(typeAttribute, "3");
    item.breakOff();

    const Outcome outcome = extractItem(item);

    EXPECT_EQ(outcome.result, VwSpecialDone);
    expectMembers(outcome.message, {entryId(u"Ann", u"MAPIPDL", u""), entryId(u"", u"SMTP", u"")});
}

TEST(OLMMsgContactGrpWriterTest, ListCutAfterAClosingTagHasNoFurtherMember) {
    const Outcome outcome = extractItem(groupOf("Ann", "a@x").breakOff());

    EXPECT_EQ(outcome.result, VwSpecialDone);
    expectMembers(outcome.message, {entryId(u"Ann", u"SMTP", u"a@x")});
}

TEST(OLMMsgContactGrpWriterTest, ListCutAfterItsOwnTagHasOneMemberWithoutTexts) {
    const Outcome outcome = extractItem(openList().breakOff());

    EXPECT_EQ(outcome.result, VwSpecialDone);
    expectMembers(outcome.message, {entryId(u"", u"SMTP", u"")});
}

// --- Failures in the list.

TEST_F(OLMMsgContactGrpWriterObjectTest, FailureInTheListLeavesBothStreamsOfSizesOpen) {
    begin(groupOf("Ann", "a@x"));
    host.shortenWrite(0, 1, 0);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), shortWriteCode);

    EXPECT_EQ(host.openHandles(), openBefore + 2);
    EXPECT_THAT(host.openHandleTexts(), Contains("__substg1.0_80001102"));
    EXPECT_THAT(host.openHandleTexts(), Contains("__substg1.0_80011102"));
    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(writer->handledProps, 0u);
}

TEST(OLMMsgContactGrpWriterTest, FailureInTheListFailsTheRequest) {
    ItemRun run;
    run.prepare = [](FakeHost& host) {
        // The first value: three streams of the names, two that every message has and two of the
        // sizes come before.
        host.failCall(CallKind::CreateStream, 7);
    };

    const Outcome outcome = extractItem(groupOf("Ann", "a@x"), run);

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_FALSE(outcome.message.has("__substg1.0_80001102-00000000"));
    EXPECT_FALSE(outcome.message.isRootClosed());
    EXPECT_EQ(outcome.openHandles, 0);
}

TEST_F(OLMMsgContactGrpWriterObjectTest, MissingStreamOfSizesFailsAtTheFirstMember) {
    begin(groupOf("Ann", "a@x"));
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), shortWriteCode);

    EXPECT_FALSE(message().has("__substg1.0_80001102"));
    EXPECT_FALSE(message().has("__substg1.0_80011102-00000000"));
}

TEST_F(OLMMsgContactGrpWriterObjectTest, EmptyListWithoutItsStreamIsLeftOut) {
    begin(group().element(memberList));
    host.failCall(CallKind::CreateStream, 0);

    writer->writeNode(*parser);

    EXPECT_THAT(added(), ElementsAre(entry(0x80011102, 0)));
    EXPECT_EQ(host.openHandles(), openBefore);
}

// --- Other elements.

TEST(OLMMsgContactGrpWriterTest, SecondGroupOfADocumentIsNotTouched) {
    ItemDocument item = groupOf("Ann", "a@x");
    item.close().close().open("group").open(memberList);
    addMember(item, "Bob", "b@x");

    expectMembers(writeItem(item), {entryId(u"Ann", u"SMTP", u"a@x")});
}
