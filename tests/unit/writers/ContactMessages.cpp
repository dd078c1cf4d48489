#include "tests/unit/writers/ContactMessages.h"

#include <cstdio>

using namespace fakehost;

namespace contacts {

namespace {

constexpr size_t requiredCount = 7;
constexpr size_t wholeAddressCount = 2;
constexpr const char* nameStream = "__nameid_version1.0/__substg1.0_00030102";

const Bytes requiredEntries = hex("02 01 09 10  06 00 00 00  00 00 00 00 00 00 00 00"
                                  "1F 00 1A 00  06 00 00 00  18 00 00 00 00 00 00 00"
                                  "0B 00 1F 0E  06 00 00 00  00 00 00 00 00 00 00 00"
                                  "03 00 F7 0F  06 00 00 00  00 00 00 00 00 00 00 00"
                                  "03 00 F4 0F  06 00 00 00  02 00 00 00 00 00 00 00"
                                  "03 00 0D 34  06 00 00 00  79 0E 04 00 00 00 00 00"
                                  "03 00 DE 3F  06 00 00 00  B0 04 00 00 00 00 00 00");

void addAddressGroup(ItemDocument& item, const char* group, const char* address) {
    item.open(group)
        .element("contactEmailAddress")
        .attribute("OPFContactEmailAddressName", "Ann Low")
        .attribute("OPFContactEmailAddressType", "0")
        .attribute(addressAttribute, address)
        .close();
}

} // namespace

PropertyEntry entry(uint32_t tag, uint64_t value) {
    return {tag, 6, value};
}

Bytes propertyBytes(const std::vector<PropertyEntry>& entries) {
    Bytes bytes = Bytes(32) + requiredEntries;
    for (const PropertyEntry& each : entries) {
        bytes = bytes + le32(each.tag) + le32(each.flags) + le64(each.value);
    }
    return bytes;
}

std::vector<PropertyEntry> ownEntries(const StoredMessage& message) {
    const std::vector<PropertyEntry> entries = message.entries();
    if (entries.size() < requiredCount + wholeAddressCount) {
        ADD_FAILURE() << "not even what every contact has: " << testing::PrintToString(entries);
        return {};
    }
    const auto end = entries.end() - static_cast<long>(wholeAddressCount);
    EXPECT_EQ(tagsOf(message, wholeBusiness), std::vector<uint32_t>{end->tag});
    EXPECT_EQ(tagsOf(message, wholeHome), std::vector<uint32_t>{(end + 1)->tag});
    return {entries.begin() + static_cast<long>(requiredCount), end};
}

Bytes nameEntry(uint32_t namedId, uint16_t number) {
    return le32(namedId) + hex("06 00") + le16(number);
}

Bytes keywordsEntry(uint16_t number) {
    return hex("00 00 00 00  05 00") + le16(number);
}

std::vector<uint32_t> tagsOf(const StoredMessage& message, uint32_t namedId) {
    const Bytes names = message.stream(nameStream);
    std::vector<uint32_t> tags;
    for (size_t at = 0; at + 8 <= names.size(); at += 8) {
        const uint32_t kindAndNumber = names.dword(at + 4);
        if (names.dword(at) == namedId && (kindAndNumber & 0xFFFF) == 6) {
            tags.push_back(0x80000000 + (kindAndNumber & 0xFFFF0000) + 0x001F);
        }
    }
    return tags;
}

std::vector<Bytes> namedValues(const StoredMessage& message, uint32_t namedId) {
    std::vector<Bytes> values;
    for (const uint32_t tag : tagsOf(message, namedId)) {
        values.push_back(message.stream(valueStream(tag)));
        int found = 0;
        for (const PropertyEntry& each : message.entries()) {
            if (each.tag == tag) {
                ++found;
                EXPECT_EQ(each, entry(tag, values.back().size() + 2));
            }
        }
        EXPECT_EQ(found, 1) << valueStream(tag);
    }
    return values;
}

Bytes wholeAddress(const StoredMessage& message, uint32_t namedId) {
    const std::vector<Bytes> values = namedValues(message, namedId);
    if (values.size() != 1) {
        ADD_FAILURE() << values.size() << " values of one whole address";
        return {};
    }
    return values.front();
}

std::string valueStream(uint32_t tag) {
    char name[24];
    std::snprintf(name, sizeof name, "__substg1.0_%08X", tag);
    return name;
}

std::string valueStream(uint32_t tag, uint32_t index) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "-%08X", index);
    return valueStream(tag) + digits;
}

ItemDocument fullContact() {
    ItemDocument item = contact();
    item.element("OPFContactCopyAnniversary", "1970-01-01T00:00:00Z")
        .element("OPFContactCopyAssistantPhone", "1")
        .element("OPFContactCopyBirthday", "2018-06-21T00:39:08")
        .element("OPFContactCopyBusinessCity", "Port")
        .element("OPFContactCopyBusinessCompany", "Pilots")
        .element("OPFContactCopyBusinessCountry", "Faroe")
        .element("OPFContactCopyBusinessDepartment", "Tugs")
        .element("OPFContactCopyBusinessFax", "2")
        .element("OPFContactCopyBusinessHomePage", "b.x")
        .element("OPFContactCopyBusinessOffice", "Quay")
        .element("OPFContactCopyBusinessPhone", "3")
        .element("OPFContactCopyBusinessPhone2", "4")
        .element("OPFContactCopyBusinessState", "Shire")
        .element("OPFContactCopyBusinessStreetAddress", "Mole 1")
        .element("OPFContactCopyBusinessTitle", "Mate")
        .element("OPFContactCopyBusinessZip", "0100")
        .open("OPFContactCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .element("OPFContactCopyCellPhone", "5")
        .open("OPFContactCopyChildren")
        .element("string", "Ida")
        .element("string", "Per")
        .close()
        .element("OPFContactCopyCustom1Data", "one")
        .element("OPFContactCopyCustom2Data", "two2")
        .element("OPFContactCopyCustom3Data", "three")
        .element("OPFContactCopyCustom4Data", "fourth");
    addAddressGroup(item, "OPFContactCopyDefaultEmailAddress", "a@x");
    addAddressGroup(item, "OPFContactCopyDefaultIMAddress", "im@x");
    item.element("OPFContactCopyDisplayName", "Ann Low");
    addAddressGroup(item, "OPFContactCopyEmailAddressList1", "ann@x");
    addAddressGroup(item, "OPFContactCopyEmailAddressList2", "low@xy");
    return item.element("OPFContactCopyFirstName", "Ann")
        .element("OPFContactCopyHomeCity", "Fjord")
        .element("OPFContactCopyHomeCountry", "Norway")
        .element("OPFContactCopyHomeFax", "6")
        .element("OPFContactCopyHomePhone", "7")
        .element("OPFContactCopyHomePhone2", "8")
        .element("OPFContactCopyHomeState", "West")
        .element("OPFContactCopyHomeStreetAddress", "Hill 2")
        .element("OPFContactCopyHomeWebPage", "h.x")
        .element("OPFContactCopyHomeZip", "5003")
        .element("OPFContactCopyInterests", "Tides")
        .element("OPFContactCopyLastName", "Low")
        .element("OPFContactCopyMiddleName", "Bo")
        .element("OPFContactCopyModDate", "1970-01-01T00:00:01Z")
        .element("OPFContactCopyNickName", "Nan")
        .element("OPFContactCopyNotes", "<b>rich</b>")
        .element("OPFContactCopyNotesPlain", "plain\n ")
        .element("OPFContactCopyPager", "9")
        .element("OPFContactCopySetNameSuffix", "Jr")
        .element("OPFContactCopySpousesName", "Lee")
        .element("OPFContactCopyTitle", "Dr")
        .element("OPFContactGetFlagStatus", "2E0")
        .element("OPFContactMainPhone", "10");
}

ContactWriterTest::ContactWriterTest() {
    request.output = host.newOutput();
}

void ContactWriterTest::openDocument(const ItemDocument& item) {
    host.entry("Local/Address Book/Contacts.xml", item);
    parser.emplace(host.openArchive(), 0);
    OLMXMLTag root;
    ASSERT_EQ(parser->nextTag(root), 1);
    writer.emplace(&request);
}

void ContactWriterTest::begin(const ItemDocument& item) {
    openDocument(item);
    ASSERT_EQ(writer->initilizeWriter(*parser), 0u);
    host.forgetCalls();
    openBefore = host.openHandles();
}

void ContactWriterTest::enterElement() {
    OLMXMLTag tag;
    ASSERT_EQ(parser->nextTag(tag), 1);
    ASSERT_FALSE(tag.isClosing());
}

std::vector<int> ContactWriterTest::run() {
    std::vector<int> progress;
    do {
        progress.push_back(writer->writeNode(*parser));
    } while (progress.back() != 100 && progress.size() < 1000);
    return progress;
}

std::vector<PropertyEntry> ContactWriterTest::added() const {
    std::vector<PropertyEntry> entries;
    for (int index = static_cast<int>(requiredCount); index < writer->properties.size(); ++index) {
        const MsgPropPair* pair = writer->properties.get(index);
        entries.push_back({pair->tag, pair->flags, pair->value});
    }
    return entries;
}

} // namespace contacts
