#include "filter/writers/OLMMsgContactWriter.h"

#include <ostream>

#include "filter/writers/OLMMsgContactTags.h"
#include "tests/unit/writers/ContactMessages.h"
#include "tests/unit/writers/FullItems.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// The forms in which an element is written.
enum class Becomes {
    Nothing,
    Text,         // the string property of its value
    Time,         // the time property of its value
    Number,       // the 32-bit property of its value
    BusinessPart, // text, the same text as the named property, and the whole business address
    HomePart,     // text, and the whole home address
    NamedText,    // text, only as the named property
    NamedAddress, // the first inner tag's address as the named property
    StringList,   // the multi-valued string of its value
    Categories,   // the multi-valued string property Keywords
    EndOfTheItem,
};

struct ElementCase {
    const char* name;
    uint64_t value; // in the tag table
    Becomes becomes;
    uint32_t namedId = 0;
};

void PrintTo(const ElementCase& row, std::ostream* out) {
    *out << row.name;
}

// One element of each form. The mapping of all elements is tested on whole archives: see
// tests/interop/expected/contact.py.
// clang-format off
constexpr ElementCase elements[] = {
    {"OPFContactCopyNotes",             0x10130102, Becomes::Nothing},
    {"OPFContactCopyTitle",             0x3A45001F, Becomes::Text},
    {"OPFContactCopyBirthday",          0x3A420040, Becomes::Time},
    {"OPFContactGetFlagStatus",         0x0E070003, Becomes::Number},
    {"OPFContactCopyBusinessCity",      0x3A27001F, Becomes::BusinessPart, 0x8046},
    {"OPFContactCopyHomeState",         0x3A5C001F, Becomes::HomePart},
    {"OPFContactCopyCustom3Data",       0x8051001F, Becomes::NamedText,    0x8051},
    {"OPFContactCopyEmailAddressList1", 3,          Becomes::NamedAddress, 0x8093},
    {"OPFContactCopyChildren",          0x3A58101F, Becomes::StringList},
    {"OPFContactCopyCategoryList",      5,          Becomes::Categories},
    {"contact",                         0,          Becomes::EndOfTheItem},
};
// clang-format on

// Returns the names in the root storage of a contact with these streams of its own and with whole
// addresses of these tags.
std::vector<std::string> rootNames(const std::vector<std::string>& own, uint32_t businessTag,
                                   uint32_t homeTag) {
    std::vector<std::string> names = {"__nameid_version1.0", valueStream(0x10090102),
                                      valueStream(0x001A001F)};
    names.insert(names.end(), own.begin(), own.end());
    names.insert(names.end(), {valueStream(businessTag), valueStream(homeTag), propertyStream});
    return names;
}

class OLMMsgContactWriterObjectTest : public ContactWriterTest {};

} // namespace

// --- The writer itself.

TEST_F(OLMMsgContactWriterObjectTest, InitializationLeavesEveryAddressPartUnset) {
    begin(contact());

    ASSERT_EQ(writer->addressParts.length(), 10);
    for (int index = 0; index < 10; ++index) {
        EXPECT_EQ(writer->addressParts.get(index), nullptr);
    }
}

TEST_F(OLMMsgContactWriterObjectTest, WholeTableIsAdded) {
    begin(contact());

    FakeHost::TagMap rows;
    for (const UTXML_STRVALPAIR& row : contactTags) {
        rows.emplace_back(row.name, row.value);
    }
    EXPECT_EQ(host.tagMaps().back(), rows);
}

// --- Single elements: the whole property stream and all value streams.

class OLMMsgContactElementTest : public testing::TestWithParam<ElementCase> {};

TEST_P(OLMMsgContactElementTest, BecomesItsProperties) {
    const ElementCase& row = GetParam();
    const auto tag = static_cast<uint32_t>(row.value);
    const std::u16string text = u"Ebb 2 flow";
    ItemDocument item = contact();
    std::vector<PropertyEntry> entries;
    std::vector<std::pair<std::string, Bytes>> streams;
    Bytes names;
    std::u16string business;
    std::u16string home;

    switch (row.becomes) {
    case Becomes::Nothing:
        item.element(row.name, text);
        break;
    case Becomes::Text:
        item.element(row.name, text);
        entries = {entry(tag, 22)};
        streams = {{valueStream(tag), utf16(text)}};
        break;
    case Becomes::Time:
        item.element(row.name, "1970-01-01T00:00:01Z");
        entries = {entry(tag, timeOfOneSecond)};
        break;
    case Becomes::Number:
        item.element(row.name, "2.7E1");
        entries = {entry(tag, 27)};
        break;
    case Becomes::BusinessPart:
        item.element(row.name, text);
        entries = {entry(tag, 22), entry(0x8000001F, 22)};
        streams = {{valueStream(tag), utf16(text)}, {valueStream(0x8000001F), utf16(text)}};
        names = nameEntry(row.namedId, 0);
        business = text;
        break;
    case Becomes::HomePart:
        item.element(row.name, text);
        entries = {entry(tag, 22)};
        streams = {{valueStream(tag), utf16(text)}};
        home = text;
        break;
    case Becomes::NamedText:
        item.element(row.name, text);
        entries = {entry(0x8000001F, 22)};
        streams = {{valueStream(0x8000001F), utf16(text)}};
        names = nameEntry(row.namedId, 0);
        break;
    case Becomes::NamedAddress:
        item.open(row.name).element("contactEmailAddress").attribute(addressAttribute, text);
        entries = {entry(0x8000001F, 22)};
        streams = {{valueStream(0x8000001F), utf16(text)}};
        names = nameEntry(row.namedId, 0);
        break;
    case Becomes::StringList:
        item.open(row.name).element("string", text);
        entries = {entry(tag, 4)};
        streams = {{valueStream(tag), le32(22)}, {valueStream(tag, 0), terminated(text)}};
        break;
    case Becomes::Categories:
        item.open(row.name).element("category").attribute("OPFCategoryCopyName", text);
        entries = {entry(0x8000101F, 4)};
        streams = {{valueStream(0x8000101F), le32(22)},
                   {valueStream(0x8000101F, 0), terminated(text)}};
        names = keywordsEntry(0);
        break;
    case Becomes::EndOfTheItem:
        item.open(row.name).element("OPFContactCopyTitle", text);
        break;
    }

    const StoredMessage message = writeItem(item);

    // After the element's own number come those of the two whole addresses.
    const auto number = static_cast<uint16_t>(names.size() / 8);
    const uint32_t businessTag = 0x8000001F + number * 0x10000U;
    const uint32_t homeTag = businessTag + 0x10000;
    names = names + nameEntry(0x801B, number) + nameEntry(0x801A, number + 1);
    entries.push_back(entry(businessTag, 2 * business.size() + 2));
    entries.push_back(entry(homeTag, 2 * home.size() + 2));
    std::vector<std::string> own;
    for (const auto& [name, bytes] : streams) {
        own.push_back(name);
        EXPECT_EQ(message.stream(name), bytes) << name;
    }

    EXPECT_EQ(message.stream(propertyStream), streamBegin(contactKind) + entryBytes(entries));
    EXPECT_EQ(message.names(), rootNames(own, businessTag, homeTag));
    EXPECT_EQ(message.stream(valueStream(businessTag)), utf16(business));
    EXPECT_EQ(message.stream(valueStream(homeTag)), utf16(home));
    EXPECT_EQ(nameStream(message, "00030102"), names);
}

TEST_P(OLMMsgContactElementTest, CountsWhenItWasHandled) {
    const ElementCase& row = GetParam();

    const Outcome outcome = extractItem(contact().open(row.name));

    // 1 of 52 elements is 1 percent. A group of addresses without a tag reads on to the end of the
    // document, and the item's own tag ends it before anything is counted.
    switch (row.becomes) {
    case Becomes::Nothing:
        EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
        break;
    case Becomes::EndOfTheItem:
        EXPECT_THAT(outcome.progress, ElementsAre(100));
        break;
    case Becomes::NamedAddress:
    case Becomes::StringList:
    case Becomes::Categories:
        EXPECT_THAT(outcome.progress, ElementsAre(1, 100));
        break;
    default:
        EXPECT_THAT(outcome.progress, ElementsAre(1, 1, 100));
        break;
    }
}

TEST_P(OLMMsgContactElementTest, WithoutTextIsNeverAFailure) {
    const ElementCase& row = GetParam();
    const auto tag = static_cast<uint32_t>(row.value);

    const StoredMessage message = writeItem(contact().element(row.name));

    switch (row.becomes) {
    case Becomes::Text:
    case Becomes::HomePart:
        EXPECT_THAT(ownEntries(message), ElementsAre(entry(tag, 2)));
        EXPECT_EQ(message.stream(valueStream(tag)), Bytes());
        break;
    case Becomes::Time:
    case Becomes::Number:
        EXPECT_THAT(ownEntries(message), ElementsAre(entry(tag, 0)));
        break;
    case Becomes::BusinessPart:
        EXPECT_THAT(ownEntries(message), ElementsAre(entry(tag, 2), entry(0x8000001F, 2)));
        EXPECT_EQ(message.stream(valueStream(tag)), Bytes());
        EXPECT_EQ(message.stream(valueStream(0x8000001F)), Bytes());
        break;
    case Becomes::NamedText:
        EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 2)));
        EXPECT_EQ(message.stream(valueStream(0x8000001F)), Bytes());
        break;
    case Becomes::StringList:
    case Becomes::Categories: {
        const uint32_t list = row.becomes == Becomes::StringList ? tag : 0x8000101F;
        EXPECT_THAT(ownEntries(message), ElementsAre(entry(list, 0)));
        EXPECT_EQ(message.stream(valueStream(list)), Bytes());
        EXPECT_FALSE(message.has(valueStream(list, 0)));
        break;
    }
    default:
        EXPECT_THAT(ownEntries(message), IsEmpty());
        break;
    }
    EXPECT_EQ(wholeAddress(message, wholeBusiness), Bytes());
    EXPECT_EQ(wholeAddress(message, wholeHome), Bytes());
}

INSTANTIATE_TEST_SUITE_P(Elements, OLMMsgContactElementTest, testing::ValuesIn(elements), rowName);

// --- Whole messages.

namespace {

// Returns a contact whose elements are not in the order of the tag table.
ItemDocument mixedContact() {
    ItemDocument item = contact();
    item.element("OPFContactCopyTitle", "Dr")
        .element("OPFContactCopyHomeCity", "Fjord")
        .open("OPFContactCopyEmailAddressList1")
        .element("contactEmailAddress")
        .attribute(addressAttribute, "a@x")
        .close()
        .element("OPFContactCopyCustom3Data", "three")
        .open("OPFContactCopyChildren")
        .element("string", "Ida")
        .element("string", "Per")
        .close();
    return addCategories(item, "OPFContactCopyCategoryList", {"Sea"})
        .element("OPFContactCopyBusinessCity", "Port")
        .element("OPFContactCopyBirthday", "1970-01-01T00:00:00Z");
}

} // namespace

TEST(OLMMsgContactWriterTest, EntriesFollowTheDocumentAndWholeAddressesTheEntries) {
    const StoredMessage message = writeItem(mixedContact());

    EXPECT_EQ(
        message.stream(propertyStream),
        streamBegin(contactKind) +
            entryBytes({entry(0x3A45001F, 6), entry(0x3A59001F, 12), entry(0x8000001F, 8),
                        entry(0x8001001F, 12), entry(0x3A58101F, 8), entry(0x8002101F, 4),
                        entry(0x3A27001F, 10), entry(0x8003001F, 10), entry(0x3A420040, time1970),
                        entry(0x8004001F, 10), entry(0x8005001F, 12)}));
    EXPECT_EQ(message.stream("__substg1.0_001A001F"), utf16(u"IPM.Contact"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F"), hex("08 00 00 00  08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F-00000000"), terminated(u"Ida"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F-00000001"), terminated(u"Per"));
    EXPECT_EQ(message.stream("__substg1.0_8002101F"), hex("08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8002101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_8004001F"), utf16(u"Port"));
    EXPECT_EQ(message.stream("__substg1.0_8005001F"), utf16(u"Fjord"));
}

TEST(OLMMsgContactWriterTest, PropertiesAreNamedInOrderOfUse) {
    const StoredMessage message = writeItem(mixedContact());

    EXPECT_EQ(nameStream(message, "00020102"),
              hex("04 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(nameStream(message, "00030102"), nameEntry(0x8093, 0) + nameEntry(0x8051, 1) +
                                                   keywordsEntry(2) + nameEntry(0x8046, 3) +
                                                   nameEntry(0x801B, 4) + nameEntry(0x801A, 5));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    // The bucket is (kind word XOR named id) modulo 31; two of the names are in one.
    const std::vector<NamesStream> buckets = {
        {"10030102", "46 80 00 00  06 00  03 00"},
        {"10150102", "3B 4D DA 2E  05 00  02 00"},
        {"101A0102", "93 80 00 00  06 00  00 00  51 80 00 00  06 00  01 00"},
        {"101D0102", "1A 80 00 00  06 00  05 00"},
        {"101E0102", "1B 80 00 00  06 00  04 00"},
    };
    EXPECT_THAT(message.names("__nameid_version1.0"), SizeIs(3 + buckets.size()));
    expectNameStreams(message, buckets);
}

// --- Plain elements.

TEST(OLMMsgContactWriterTest, RichNotesAreDroppedAndPlainOnesAreTheBody) {
    const StoredMessage message = writeItem(contact()
                                                .element("OPFContactCopyNotes", "<b>rich</b>")
                                                .element("OPFContactCopyNotesPlain", "rich"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x1000001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"rich"));
    EXPECT_FALSE(message.has("__substg1.0_10130102"));
}

class OLMMsgContactFlagTest : public NumberTest {};

TEST_P(OLMMsgContactFlagTest, NumberIsWrittenUnchangedToTheMessageFlags) {
    const StoredMessage message =
        writeItem(contact().element("OPFContactGetFlagStatus", GetParam().text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E070003, GetParam().value)));
}

INSTANTIATE_TEST_SUITE_P(Texts, OLMMsgContactFlagTest,
                         testing::Values(NumberCase{"Plain", "2", 2},
                                         NumberCase{"Exponent", "1E0", 1},
                                         NumberCase{"NegativeIsNotExtended", "-1", 0xFFFFFFFF},
                                         NumberCase{"OnlyTheLowHalf", "4294967299", 3},
                                         NumberCase{"NoNumber", "flagged", 0}),
                         rowName);

TEST(OLMMsgContactWriterTest, FlagStatusIsWrittenForEachOfItsElements) {
    const StoredMessage twice = writeItem(
        contact().element("OPFContactGetFlagStatus", "1").element("OPFContactGetFlagStatus", "2"));
    EXPECT_THAT(ownEntries(twice), ElementsAre(entry(0x0E070003, 1), entry(0x0E070003, 2)));

    const StoredMessage none = writeItem(contact().element("OPFContactCopyTitle", "Dr"));
    EXPECT_THAT(none, HasNoProperty(0x0E070003));
}

TEST(OLMMsgContactWriterTest, ModificationTimeIsNotACreationTime) {
    const StoredMessage message =
        writeItem(contact().element("OPFContactCopyModDate", "1970-01-01T00:00:00Z"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x30080040, time1970)));
}

TEST(OLMMsgContactWriterTest, NothingIsDerivedFromTheNames) {
    const StoredMessage message = writeItem(contact()
                                                .element("OPFContactCopyFirstName", "Ann")
                                                .element("OPFContactCopyLastName", "Low"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A06001F, 8), entry(0x3A11001F, 8)));
}

TEST(OLMMsgContactWriterTest, CustomDataIsNeverWrittenUnderItsKey) {
    const StoredMessage message = writeItem(contact()
                                                .element("OPFContactCopyCustom4Data", "Spring")
                                                .element("OPFContactCopyCustom4Data", "Neap"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 14), entry(0x8001001F, 10)));
    EXPECT_THAT(namedValues(message, 0x8052), ElementsAre(utf16(u"Spring"), utf16(u"Neap")));
    EXPECT_FALSE(message.has("__substg1.0_8052001F"));
}

// --- Progress.

TEST(OLMMsgContactWriterTest, FullContactStaysBelow100UntilItsRootTag) {
    const Outcome outcome = extractItem(fullContact());

    ASSERT_GE(outcome.progress.size(), 2u);
    EXPECT_EQ(outcome.progress.back(), 100);
    EXPECT_EQ(outcome.progress.end()[-2], 96) << "50 of 52";
    EXPECT_EQ(std::ranges::count(outcome.progress, 100), 1);
}

// --- Text of every length around the size of a chunk.

class OLMMsgContactLengthTest : public TextLengthTest {};

TEST_P(OLMMsgContactLengthTest, AddressPartsAndWholeAddressesAreWhole) {
    const StoredMessage message =
        writeItem(contact()
                      .element("OPFContactCopyBusinessStreetAddress", text)
                      .element("OPFContactCopyBusinessZip", text)
                      .element("OPFContactCopyHomeStreetAddress", text)
                      .element("OPFContactCopyHomeZip", text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A29001F, size), entry(0x8000001F, size),
                                                 entry(0x3A2A001F, size), entry(0x8001001F, size),
                                                 entry(0x3A5D001F, size), entry(0x3A5B001F, size)));
    for (const uint32_t tag :
         {0x3A29001FU, 0x8000001FU, 0x3A2A001FU, 0x8001001FU, 0x3A5D001FU, 0x3A5B001FU}) {
        EXPECT_EQ(message.stream(valueStream(tag)), utf16(text)) << valueStream(tag);
    }
    const Bytes whole = utf16(text) + utf16(u"\r\n") + utf16(text);
    EXPECT_EQ(wholeAddress(message, wholeBusiness), whole);
    EXPECT_EQ(wholeAddress(message, wholeHome), whole);
}

TEST_P(OLMMsgContactLengthTest, AddressesAndListsAreWhole) {
    const StoredMessage message = writeItem(contact()
                                                .open("OPFContactCopyChildren")
                                                .element("string", text + u"!")
                                                .close()
                                                .open("OPFContactCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", text)
                                                .close()
                                                .open("OPFContactCopyDefaultEmailAddress")
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, text)
                                                .close());

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x3A58101F, 4), entry(0x8000101F, 4), entry(0x8001001F, size)));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F"), le32(static_cast<uint32_t>(size + 2)));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F-00000000"), terminated(text + u"!"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), le32(static_cast<uint32_t>(size)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(text));
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), utf16(text));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgContactLengthTest, testing::ValuesIn(textLengths));
