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

// What an element becomes.
enum class Becomes {
    Nothing,
    Text,         // the string property of its value
    Time,         // the time property of its value
    Number,       // the 32-bit property of its value
    BusinessPart, // text, text again as the named property, and the whole business address
    HomePart,     // text, and the whole home address
    NamedText,    // text as the named property alone
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

// clang-format off
constexpr ElementCase elements[] = {
    {"OPFContactCopyAnniversary",           0x3A410040, Becomes::Time},
    {"OPFContactCopyAssistantPhone",        0x3A2E001F, Becomes::Text},
    {"OPFContactCopyBirthday",              0x3A420040, Becomes::Time},
    {"OPFContactCopyBusinessCity",          0x3A27001F, Becomes::BusinessPart, 0x8046},
    {"OPFContactCopyBusinessCompany",       0x3A16001F, Becomes::Text},
    {"OPFContactCopyBusinessCountry",       0x3A26001F, Becomes::Text},
    {"OPFContactCopyBusinessDepartment",    0x3A18001F, Becomes::Text},
    {"OPFContactCopyBusinessFax",           0x3A24001F, Becomes::Text},
    {"OPFContactCopyBusinessHomePage",      0x3A51001F, Becomes::Text},
    {"OPFContactCopyBusinessOffice",        0x3A19001F, Becomes::Text},
    {"OPFContactCopyBusinessPhone",         0x3A08001F, Becomes::Text},
    {"OPFContactCopyBusinessPhone2",        0x3A1B001F, Becomes::Text},
    {"OPFContactCopyBusinessState",         0x3A28001F, Becomes::BusinessPart, 0x8047},
    {"OPFContactCopyBusinessStreetAddress", 0x3A29001F, Becomes::BusinessPart, 0x8045},
    {"OPFContactCopyBusinessTitle",         0x3A17001F, Becomes::Text},
    {"OPFContactCopyBusinessZip",           0x3A2A001F, Becomes::BusinessPart, 0x8048},
    {"OPFContactCopyCategoryList",          5,          Becomes::Categories},
    {"OPFContactCopyCellPhone",             0x3A1C001F, Becomes::Text},
    {"OPFContactCopyChildren",              0x3A58101F, Becomes::StringList},
    {"OPFContactCopyCustom1Data",           0x804F001F, Becomes::NamedText,    0x804F},
    {"OPFContactCopyCustom2Data",           0x8050001F, Becomes::NamedText,    0x8050},
    {"OPFContactCopyCustom3Data",           0x8051001F, Becomes::NamedText,    0x8051},
    {"OPFContactCopyCustom4Data",           0x8052001F, Becomes::NamedText,    0x8052},
    {"OPFContactCopyDefaultEmailAddress",   2,          Becomes::NamedAddress, 0x8083},
    {"OPFContactCopyDefaultIMAddress",      1,          Becomes::NamedAddress, 0x8062},
    {"OPFContactCopyDisplayName",           0x3001001F, Becomes::Text},
    {"OPFContactCopyEmailAddressList1",     3,          Becomes::NamedAddress, 0x8093},
    {"OPFContactCopyEmailAddressList2",     4,          Becomes::NamedAddress, 0x80A3},
    {"OPFContactCopyFirstName",             0x3A06001F, Becomes::Text},
    {"OPFContactCopyHomeCity",              0x3A59001F, Becomes::HomePart},
    {"OPFContactCopyHomeCountry",           0x3A5A001F, Becomes::Text},
    {"OPFContactCopyHomeFax",               0x3A25001F, Becomes::Text},
    {"OPFContactCopyHomePhone",             0x3A09001F, Becomes::Text},
    {"OPFContactCopyHomePhone2",            0x3A2F001F, Becomes::Text},
    {"OPFContactCopyHomeState",             0x3A5C001F, Becomes::HomePart},
    {"OPFContactCopyHomeStreetAddress",     0x3A5D001F, Becomes::HomePart},
    {"OPFContactCopyHomeWebPage",           0x3A50001F, Becomes::Text},
    {"OPFContactCopyHomeZip",               0x3A5B001F, Becomes::HomePart},
    {"OPFContactCopyInterests",             0x3A43001F, Becomes::Text},
    {"OPFContactCopyLastName",              0x3A11001F, Becomes::Text},
    {"OPFContactCopyMiddleName",            0x3A44001F, Becomes::Text},
    {"OPFContactCopyModDate",               0x30080040, Becomes::Time},
    {"OPFContactCopyNickName",              0x3A4F001F, Becomes::Text},
    {"OPFContactCopyNotes",                 0x10130102, Becomes::Nothing},
    {"OPFContactCopyNotesPlain",            0x1000001F, Becomes::Text},
    {"OPFContactCopyPager",                 0x3A21001F, Becomes::Text},
    {"OPFContactCopySetNameSuffix",         0x3A05001F, Becomes::Text},
    {"OPFContactCopySpousesName",           0x3A48001F, Becomes::Text},
    {"OPFContactCopyTitle",                 0x3A45001F, Becomes::Text},
    {"OPFContactGetFlagStatus",             0x0E070003, Becomes::Number},
    {"OPFContactMainPhone",                 0x3A1A001F, Becomes::Text},
    {"contact",                             0,          Becomes::EndOfTheItem},
};
// clang-format on

// The streams of the root storage that every contact has, with two whole addresses of these tags.
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

// --- The object.

TEST_F(OLMMsgContactWriterObjectTest, BeginningHasEveryAddressPartUnset) {
    begin(contact());

    ASSERT_EQ(writer->addressParts.length(), 10);
    for (int index = 0; index < 10; ++index) {
        EXPECT_EQ(writer->addressParts.get(index), nullptr);
    }
}

TEST_F(OLMMsgContactWriterObjectTest, TableIsAddedInByteOrder) {
    begin(contact());

    std::vector<std::pair<std::string, uint64_t>> rows;
    for (const ElementCase& row : elements) {
        rows.emplace_back(row.name, row.value);
    }
    EXPECT_THAT(rows, SizeIs(52));
    EXPECT_EQ(host.tagMaps().back(), rows);
}

// --- Every element on its own: the whole property stream and all value streams.

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

    // Behind the element's own number come those of the two whole addresses.
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

TEST_P(OLMMsgContactElementTest, CountsWhenItWasTaken) {
    const ElementCase& row = GetParam();

    const Outcome outcome = extractItem(contact().open(row.name));

    // 1 of 52 elements is 1 percent. A group of addresses without a tag reads on to the end of the
    // document, and the root's own tag ends the item ahead of any count.
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

TEST(OLMMsgContactWriterTest, FullContactIsWrittenInDocumentOrder) {
    const StoredMessage message = writeItem(fullContact());

    // clang-format off
    EXPECT_EQ(message.stream(propertyStream), streamBegin(contactKind) + entryBytes({
        entry(0x3A410040, time1970), entry(0x3A2E001F, 4),
        entry(0x3A420040, timeIn2018),
        entry(0x3A27001F, 10), entry(0x8000001F, 10),
        entry(0x3A16001F, 14), entry(0x3A26001F, 12), entry(0x3A18001F, 10), entry(0x3A24001F, 4),
        entry(0x3A51001F, 8), entry(0x3A19001F, 10), entry(0x3A08001F, 4), entry(0x3A1B001F, 4),
        entry(0x3A28001F, 12), entry(0x8001001F, 12),
        entry(0x3A29001F, 14), entry(0x8002001F, 14),
        entry(0x3A17001F, 10),
        entry(0x3A2A001F, 10), entry(0x8003001F, 10),
        entry(0x8004101F, 4), entry(0x3A1C001F, 4), entry(0x3A58101F, 8),
        entry(0x8005001F, 8), entry(0x8006001F, 10), entry(0x8007001F, 12), entry(0x8008001F, 14),
        entry(0x8009001F, 8), entry(0x800A001F, 10), entry(0x3001001F, 16),
        entry(0x800B001F, 12), entry(0x800C001F, 14), entry(0x3A06001F, 8),
        entry(0x3A59001F, 12), entry(0x3A5A001F, 14), entry(0x3A25001F, 4), entry(0x3A09001F, 4),
        entry(0x3A2F001F, 4), entry(0x3A5C001F, 10), entry(0x3A5D001F, 14), entry(0x3A50001F, 8),
        entry(0x3A5B001F, 10), entry(0x3A43001F, 12), entry(0x3A11001F, 8), entry(0x3A44001F, 6),
        entry(0x30080040, timeOfOneSecond), entry(0x3A4F001F, 8), entry(0x1000001F, 16),
        entry(0x3A21001F, 4), entry(0x3A05001F, 6), entry(0x3A48001F, 8), entry(0x3A45001F, 6),
        entry(0x0E070003, 2), entry(0x3A1A001F, 6),
        entry(0x800D001F, 52), entry(0x800E001F, 52)}));
    // clang-format on
    EXPECT_EQ(message.stream("__substg1.0_001A001F"), utf16(u"IPM.Contact"));
    EXPECT_EQ(message.stream("__substg1.0_800D001F"), utf16(u"Mole 1\r\nPort\r\nShire\r\n0100"));
    EXPECT_EQ(message.stream("__substg1.0_800E001F"), utf16(u"Hill 2\r\nFjord\r\nWest\r\n5003"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F"), hex("08 00 00 00  08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F-00000000"), terminated(u"Ida"));
    EXPECT_EQ(message.stream("__substg1.0_3A58101F-00000001"), terminated(u"Per"));
    EXPECT_EQ(message.stream("__substg1.0_8004101F"), hex("08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8004101F-00000000"), terminated(u"Sea"));
}

TEST(OLMMsgContactWriterTest, FullContactHasTheTextOfEveryElementInItsStream) {
    const StoredMessage message = writeItem(fullContact());

    const std::vector<std::pair<uint32_t, const char16_t*>> texts = {
        {0x3A2E001F, u"1"},      {0x3A27001F, u"Port"},     {0x8000001F, u"Port"},
        {0x3A16001F, u"Pilots"}, {0x3A26001F, u"Faroe"},    {0x3A18001F, u"Tugs"},
        {0x3A24001F, u"2"},      {0x3A51001F, u"b.x"},      {0x3A19001F, u"Quay"},
        {0x3A08001F, u"3"},      {0x3A1B001F, u"4"},        {0x3A28001F, u"Shire"},
        {0x8001001F, u"Shire"},  {0x3A29001F, u"Mole 1"},   {0x8002001F, u"Mole 1"},
        {0x3A17001F, u"Mate"},   {0x3A2A001F, u"0100"},     {0x8003001F, u"0100"},
        {0x3A1C001F, u"5"},      {0x8005001F, u"one"},      {0x8006001F, u"two2"},
        {0x8007001F, u"three"},  {0x8008001F, u"fourth"},   {0x8009001F, u"a@x"},
        {0x800A001F, u"im@x"},   {0x3001001F, u"Ann Low"},  {0x800B001F, u"ann@x"},
        {0x800C001F, u"low@xy"}, {0x3A06001F, u"Ann"},      {0x3A59001F, u"Fjord"},
        {0x3A5A001F, u"Norway"}, {0x3A25001F, u"6"},        {0x3A09001F, u"7"},
        {0x3A2F001F, u"8"},      {0x3A5C001F, u"West"},     {0x3A5D001F, u"Hill 2"},
        {0x3A50001F, u"h.x"},    {0x3A5B001F, u"5003"},     {0x3A43001F, u"Tides"},
        {0x3A11001F, u"Low"},    {0x3A44001F, u"Bo"},       {0x3A4F001F, u"Nan"},
        {0x3A21001F, u"9"},      {0x1000001F, u"plain\n "}, {0x3A05001F, u"Jr"},
        {0x3A48001F, u"Lee"},    {0x3A45001F, u"Dr"},       {0x3A1A001F, u"10"},
    };
    for (const auto& [tag, text] : texts) {
        EXPECT_THAT(message, HasText(tag, text));
    }
}

TEST(OLMMsgContactWriterTest, FullContactNamesItsPropertiesInOrderOfUse) {
    const StoredMessage message = writeItem(fullContact());

    EXPECT_EQ(nameStream(message, "00020102"),
              hex("04 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    EXPECT_EQ(nameStream(message, "00030102"), hex("46 80 00 00  06 00  00 00"
                                                   "47 80 00 00  06 00  01 00"
                                                   "45 80 00 00  06 00  02 00"
                                                   "48 80 00 00  06 00  03 00"
                                                   "00 00 00 00  05 00  04 00"
                                                   "4F 80 00 00  06 00  05 00"
                                                   "50 80 00 00  06 00  06 00"
                                                   "51 80 00 00  06 00  07 00"
                                                   "52 80 00 00  06 00  08 00"
                                                   "83 80 00 00  06 00  09 00"
                                                   "62 80 00 00  06 00  0A 00"
                                                   "93 80 00 00  06 00  0B 00"
                                                   "A3 80 00 00  06 00  0C 00"
                                                   "1B 80 00 00  06 00  0D 00"
                                                   "1A 80 00 00  06 00  0E 00"));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    // The bucket is (kind word XOR named id) modulo 31; two of the names meet in one.
    const std::vector<NamesStream> buckets = {
        {"10030102", "46 80 00 00  06 00  00 00"},
        {"10040102", "47 80 00 00  06 00  01 00"},
        {"10060102", "45 80 00 00  06 00  02 00"},
        {"10080102", "62 80 00 00  06 00  0A 00"},
        {"100A0102", "83 80 00 00  06 00  09 00"},
        {"100B0102", "A3 80 00 00  06 00  0C 00"},
        {"100C0102", "4F 80 00 00  06 00  05 00"},
        {"10110102", "48 80 00 00  06 00  03 00"},
        {"10150102", "3B 4D DA 2E  05 00  04 00"},
        {"10170102", "52 80 00 00  06 00  08 00"},
        {"10190102", "50 80 00 00  06 00  06 00"},
        {"101A0102", "51 80 00 00  06 00  07 00  93 80 00 00  06 00  0B 00"},
        {"101D0102", "1A 80 00 00  06 00  0E 00"},
        {"101E0102", "1B 80 00 00  06 00  0D 00"},
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

TEST_P(OLMMsgContactFlagTest, NumberGoesStraightIntoTheMessageFlags) {
    const StoredMessage message =
        writeItem(contact().element("OPFContactGetFlagStatus", GetParam().text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E070003, GetParam().value)));
}

INSTANTIATE_TEST_SUITE_P(Texts, OLMMsgContactFlagTest,
                         testing::Values(NumberCase{"Plain", "2", 2},
                                         NumberCase{"Exponent", "1E0", 1},
                                         NumberCase{"NegativeIsNotExtended", "-1", 0xFFFFFFFF},
                                         NumberCase{"LowHalfAlone", "4294967299", 3},
                                         NumberCase{"NoNumber", "flagged", 0}),
                         rowName);

TEST(OLMMsgContactWriterTest, FlagStatusOverwritesNothingAndIsMissingWithoutItsElement) {
    const StoredMessage twice = writeItem(
        contact().element("OPFContactGetFlagStatus", "1").element("OPFContactGetFlagStatus", "2"));
    EXPECT_THAT(ownEntries(twice), ElementsAre(entry(0x0E070003, 1), entry(0x0E070003, 2)));

    const StoredMessage none = writeItem(contact().element("OPFContactCopyTitle", "Dr"));
    EXPECT_THAT(none, HasNoProperty(0x0E070003));
}

TEST(OLMMsgContactWriterTest, ModificationTimeIsNoCreationTime) {
    const StoredMessage message =
        writeItem(contact().element("OPFContactCopyModDate", "1970-01-01T00:00:00Z"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x30080040, time1970)));
}

TEST(OLMMsgContactWriterTest, NothingIsMadeUpFromTheNames) {
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

// --- How far the contact is.

TEST(OLMMsgContactWriterTest, FullContactStaysBelowTheEndUntilItsRootTag) {
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
