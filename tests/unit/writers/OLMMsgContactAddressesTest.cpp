#include <algorithm>
#include <memory>
#include <tuple>

#include "filter/writers/OLMMsgContactWriter.h"
#include "tests/unit/core/Wide.h"
#include "tests/unit/writers/ContactMessages.h"
#include "tests/unit/writers/FullItems.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* businessStreet = "OPFContactCopyBusinessStreetAddress";
constexpr const char* businessCity = "OPFContactCopyBusinessCity";
constexpr const char* businessState = "OPFContactCopyBusinessState";
constexpr const char* businessZip = "OPFContactCopyBusinessZip";
constexpr const char* homeStreet = "OPFContactCopyHomeStreetAddress";
constexpr const char* homeCity = "OPFContactCopyHomeCity";
constexpr const char* homeState = "OPFContactCopyHomeState";
constexpr const char* homeZip = "OPFContactCopyHomeZip";

// A key that is not in the table of named properties.
constexpr unsigned int unknownName = 0x8999001F;

// Makes the next mapping of a named property fail in another way than an unknown one: the list of
// mapped properties gets a negative size, which its store rejects as an index.
class BrokenMapping {
public:
    explicit BrokenMapping(MapiNamedPropMap& map) : count((map.*mapped()).*counter()) {
        count = -1;
    }
    ~BrokenMapping() { count = 0; }
    BrokenMapping(const BrokenMapping&) = delete;
    BrokenMapping& operator=(const BrokenMapping&) = delete;

private:
    struct OpenMap : MapiNamedPropMap {
        using MapiNamedPropMap::mappedProps;
    };
    struct OpenList : qor::ArrayList<long> {
        using qor::ArrayList<long>::elementCount;
    };
    static auto mapped() -> qor::ArrayList<long> MapiNamedPropMap::* {
        return &OpenMap::mappedProps;
    }
    static auto counter() -> int qor::ArrayList<long>::* { return &OpenList::elementCount; }

    int& count;
};

// Too long to be stored inside its object, so that a leak shows.
constexpr std::u16string_view longText = u"at the end of the mole, after the second crane";

template <class Action> void expectIndexRejected(Action action) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const qor::Exception& failure) {
        EXPECT_EQ(failure.code, qor::errorIndex);
        EXPECT_STREQ(failure.message(), "Array.get(): requested index is out of range");
    }
}

class OLMMsgContactAddressesObjectTest : public ContactWriterTest {
protected:
    // Returns the whole address of these parts, as the bytes of its stream.
    [[nodiscard]] Bytes joined(ContactAddrPartIndex first, ContactAddrPartIndex last) const {
        const std::unique_ptr<qor::WString> whole(writer->constructWholeAddr(first, last));
        const auto* units = reinterpret_cast<const char16_t*>(whole->value());
        return utf16({units, static_cast<size_t>(whole->length())});
    }

    void store(int index, std::u16string_view text) {
        writer->storeAddrPart(static_cast<ContactAddrPartIndex>(index),
                              new qor::WString(wide(text)));
    }
};

} // namespace

// --- The parts.

TEST(OLMMsgContactAddressesTest, BusinessPartIsWrittenPlainAndThenNamed) {
    const StoredMessage message = writeItem(contact()
                                                .element(businessZip, "0100")
                                                .element(businessCity, "Port")
                                                .element(businessStreet, "Mole 1")
                                                .element(businessState, "Shire"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x3A2A001F, 10), entry(0x8000001F, 10), entry(0x3A27001F, 10),
                            entry(0x8001001F, 10), entry(0x3A29001F, 14), entry(0x8002001F, 14),
                            entry(0x3A28001F, 12), entry(0x8003001F, 12)));
    EXPECT_THAT(namedValues(message, 0x8048), ElementsAre(utf16(u"0100")));
    EXPECT_THAT(namedValues(message, 0x8046), ElementsAre(utf16(u"Port")));
    EXPECT_THAT(namedValues(message, 0x8045), ElementsAre(utf16(u"Mole 1")));
    EXPECT_THAT(namedValues(message, 0x8047), ElementsAre(utf16(u"Shire")));
    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Mole 1\r\nPort\r\nShire\r\n0100"));
    EXPECT_EQ(wholeAddress(message, wholeHome), Bytes());
}

TEST(OLMMsgContactAddressesTest, HomePartIsNotNamed) {
    const StoredMessage message = writeItem(contact()
                                                .element(homeZip, "5003")
                                                .element(homeCity, "Fjord")
                                                .element(homeStreet, "Hill 2")
                                                .element(homeState, "West"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A5B001F, 10), entry(0x3A59001F, 12),
                                                 entry(0x3A5D001F, 14), entry(0x3A5C001F, 10)));
    EXPECT_EQ(nameStream(message, "00030102"), nameEntry(0x801B, 0) + nameEntry(0x801A, 1));
    EXPECT_EQ(wholeAddress(message, wholeBusiness), Bytes());
    EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"Hill 2\r\nFjord\r\nWest\r\n5003"));
}

TEST(OLMMsgContactAddressesTest, RepeatedPartIsWrittenTwiceButOnlyTheSecondIsInTheWhole) {
    const StoredMessage message = writeItem(contact()
                                                .element(businessStreet, "Mole 1")
                                                .element(businessCity, "Port")
                                                .element(businessCity, "Harbour"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x3A29001F, 14), entry(0x8000001F, 14), entry(0x3A27001F, 10),
                            entry(0x8001001F, 10), entry(0x3A27001F, 16), entry(0x8002001F, 16)));
    EXPECT_EQ(message.stream("__substg1.0_3A27001F"), utf16(u"Harbour"));
    EXPECT_THAT(namedValues(message, 0x8046), ElementsAre(utf16(u"Port"), utf16(u"Harbour")));
    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Mole 1\r\nHarbour"));
}

TEST(OLMMsgContactAddressesTest, RepeatedHomePartIsWrittenTwiceButOnlyTheSecondIsInTheWhole) {
    const StoredMessage message =
        writeItem(contact().element(homeCity, "Fjord").element(homeCity, ""));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A59001F, 12), entry(0x3A59001F, 2)));
    EXPECT_EQ(message.stream("__substg1.0_3A59001F"), Bytes());
    EXPECT_EQ(wholeAddress(message, wholeHome), Bytes());
}

// --- The whole addresses.

TEST(OLMMsgContactAddressesTest, ContactWithoutPartsHasTwoEmptyWholeAddresses) {
    const StoredMessage message = writeItem(contact().element("OPFContactCopyFirstName", "Ann"));

    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(contactKind) +
                  entryBytes({entry(0x3A06001F, 8), entry(0x8000001F, 2), entry(0x8001001F, 2)}));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_8001001F"), Bytes());
    EXPECT_EQ(nameStream(message, "00030102"), nameEntry(0x801B, 0) + nameEntry(0x801A, 1));
}

TEST(OLMMsgContactAddressesTest, PartsAreInTheirOwnOrderInAnyOrderOfElements) {
    std::vector<std::pair<const char*, const char*>> parts = {{businessStreet, "Mole 1"},
                                                              {businessCity, "Port"},
                                                              {businessState, "Shire"},
                                                              {businessZip, "0100"}};
    std::ranges::sort(parts);
    int orders = 0;
    do {
        ItemDocument item = contact();
        for (const auto& [name, text] : parts) {
            item.element(name, text);
        }
        EXPECT_EQ(wholeAddress(writeItem(item), wholeBusiness),
                  utf16(u"Mole 1\r\nPort\r\nShire\r\n0100"));
        ++orders;
    } while (std::ranges::next_permutation(parts).found);
    EXPECT_EQ(orders, 24);
}

TEST(OLMMsgContactAddressesTest, MissingPartsHaveNoLine) {
    const StoredMessage message = writeItem(contact()
                                                .element(businessStreet, "Mole 1")
                                                .element(businessZip, "0100")
                                                .element(homeCity, "Fjord"));

    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Mole 1\r\n0100"));
    EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"Fjord"));
}

TEST(OLMMsgContactAddressesTest, PartWithoutTextLeavesAnEmptyLine) {
    const StoredMessage message = writeItem(contact()
                                                .element(businessStreet, "Mole 1")
                                                .element(businessCity)
                                                .element(businessZip, "0100")
                                                .element(homeStreet)
                                                .element(homeZip, "5003"));

    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Mole 1\r\n\r\n0100"));
    EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"\r\n5003"));
    EXPECT_EQ(message.stream("__substg1.0_3A27001F"), Bytes());
    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x3A29001F, 14), entry(0x8000001F, 14), entry(0x3A27001F, 2),
                            entry(0x8001001F, 2), entry(0x3A2A001F, 10), entry(0x8002001F, 10),
                            entry(0x3A5D001F, 2), entry(0x3A5B001F, 10)));
}

TEST(OLMMsgContactAddressesTest, LastPartWithoutTextLeavesTheLineEndBeforeIt) {
    const StoredMessage message = writeItem(
        contact().element(businessStreet, "Mole 1").element(businessZip).element(homeCity));

    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Mole 1\r\n"));
    EXPECT_EQ(wholeAddress(message, wholeHome), Bytes());
}

TEST(OLMMsgContactAddressesTest, LineEndsInsideAPartAreKept) {
    const StoredMessage message =
        writeItem(contact().element(homeStreet, "Hill 2\r\nStairs\r").element(homeCity, "Fjord\n"));

    EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"Hill 2\r\nStairs\r\r\nFjord\n"));
}

TEST(OLMMsgContactAddressesTest, CountryIsInNoWholeAddress) {
    const StoredMessage message = writeItem(contact()
                                                .element(businessCity, "Port")
                                                .element("OPFContactCopyBusinessCountry", "Faroe")
                                                .element(homeCity, "Fjord")
                                                .element("OPFContactCopyHomeCountry", "Norway"));

    EXPECT_THAT(message, HasText(0x3A26001F, u"Faroe"));
    EXPECT_THAT(message, HasText(0x3A5A001F, u"Norway"));
    EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Port"));
    EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"Fjord"));
}

TEST(OLMMsgContactAddressesTest, OnlyACountryMakesNoWholeAddress) {
    const StoredMessage message = writeItem(contact()
                                                .element("OPFContactCopyBusinessCountry", "Faroe")
                                                .element("OPFContactCopyHomeCountry", "Norway"));

    EXPECT_EQ(wholeAddress(message, wholeBusiness), Bytes());
    EXPECT_EQ(wholeAddress(message, wholeHome), Bytes());
}

TEST_F(OLMMsgContactAddressesObjectTest, EverySlotIsALineOfItsAddress) {
    begin(contact());
    for (int index = 0; index < 10; ++index) {
        store(index, std::u16string(1, static_cast<char16_t>(u'a' + index)));
    }

    EXPECT_EQ(joined(BusinessStreet, BusinessCountry), utf16(u"a\r\nb\r\nc\r\nd\r\ne"));
    EXPECT_EQ(joined(HomeStreet, HomeCountry), utf16(u"f\r\ng\r\nh\r\ni\r\nj"));
    EXPECT_EQ(joined(HomeCity, HomeCity), utf16(u"g"));
    EXPECT_EQ(joined(HomeCity, HomeStreet), Bytes());
}

TEST_F(OLMMsgContactAddressesObjectTest, SlotsWithoutAnElementStayNull) {
    begin(fullContact());
    run();

    for (int index = 0; index < 10; ++index) {
        EXPECT_EQ(writer->addressParts.get(index) == nullptr, index == 4 || index == 9) << index;
    }
}

TEST_F(OLMMsgContactAddressesObjectTest, IndexOutsideThePartsIsRejectedAndTheTextFreed) {
    begin(contact());
    for (const int index : {10, 11, -1}) {
        expectIndexRejected([&] { store(index, longText); });
    }
}

TEST_F(OLMMsgContactAddressesObjectTest, WholeAddressOfAnIndexOutsideThePartsIsRejected) {
    begin(contact());
    store(HomeCountry, longText);

    expectIndexRejected(
        [&] { std::ignore = joined(HomeCountry, static_cast<ContactAddrPartIndex>(10)); });
}

// --- Text as a plain and a named property.

TEST_F(OLMMsgContactAddressesObjectTest, ElementIsReadIntoATextOrAnEmptyOne) {
    begin(contact().element("a", "High water").element("b"));
    enterElement();
    const std::unique_ptr<qor::WString> text(writer->readStringValue(*parser));
    EXPECT_TRUE(*text == wide(u"High water"));

    enterElement();
    const std::unique_ptr<qor::WString> none(writer->readStringValue(*parser));
    EXPECT_EQ(none->length(), 0);
}

TEST_F(OLMMsgContactAddressesObjectTest, TextIsAddedPlainAndNamed) {
    begin(contact());

    writer->handleDupProps(wide(u"Port"), 0x3A27001F, 0x8046001F);

    EXPECT_THAT(added(), ElementsAre(entry(0x3A27001F, 10), entry(0x8000001F, 10)));
    EXPECT_EQ(message().stream("__substg1.0_3A27001F"), utf16(u"Port"));
    EXPECT_EQ(message().stream("__substg1.0_8000001F"), utf16(u"Port"));
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgContactAddressesObjectTest, ElementIsAddedPlainAndNamed) {
    begin(contact().element("a", "Port").element("b"));

    enterElement();
    writer->handleDupProps(*parser, 0x3A27001F, 0x8046001F);
    enterElement();
    writer->handleDupProps(*parser, 0x3A28001F, 0x8047001F);

    EXPECT_THAT(added(), ElementsAre(entry(0x3A27001F, 10), entry(0x8000001F, 10),
                                     entry(0x3A28001F, 2), entry(0x8001001F, 2)));
    EXPECT_EQ(message().stream("__substg1.0_3A27001F"), utf16(u"Port"));
    EXPECT_EQ(message().stream("__substg1.0_8000001F"), utf16(u"Port"));
    EXPECT_EQ(message().stream("__substg1.0_3A28001F"), Bytes());
    EXPECT_EQ(message().stream("__substg1.0_8001001F"), Bytes());
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgContactAddressesObjectTest, ElementIsAddedNamed) {
    begin(contact().element("a", "Spring").element("b"));

    enterElement();
    writer->handleNamedStrProp(*parser, 0x804F001F);
    enterElement();
    writer->handleNamedStrProp(*parser, 0x8050001F);

    EXPECT_THAT(added(), ElementsAre(entry(0x8000001F, 14), entry(0x8001001F, 2)));
    EXPECT_EQ(message().stream("__substg1.0_8000001F"), utf16(u"Spring"));
    EXPECT_EQ(message().stream("__substg1.0_8001001F"), Bytes());
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgContactAddressesObjectTest, UnknownNameIsLeftOut) {
    begin(contact().element("a", "Port").element("b", "Quay"));

    writer->handleDupProps(wide(u"Mole"), 0x3A29001F, unknownName);
    writer->handleNamedStrProp(wide(u"Mole"), unknownName);
    enterElement();
    writer->handleDupProps(*parser, 0x3A27001F, unknownName);
    enterElement();
    writer->handleNamedStrProp(*parser, unknownName);

    EXPECT_THAT(added(), ElementsAre(entry(0x3A29001F, 10), entry(0x3A27001F, 10)));
    EXPECT_FALSE(message().has("__substg1.0_8000001F"));
    writer->handleNamedStrProp(wide(u"Mole"), 0x8045001F);
    EXPECT_TRUE(message().has("__substg1.0_8000001F")) << "no number was used up";
}

TEST_F(OLMMsgContactAddressesObjectTest, OtherFailureOfTheMappingIsRethrown) {
    begin(contact().element("a", "Port").element("b", "Quay"));
    const BrokenMapping broken(writer->namedProps);

    EXPECT_EQ(thrownCode([&] { writer->handleDupProps(wide(u"x"), 0x3A29001F, 0x8045001F); }),
              qor::errorIndex);
    EXPECT_THAT(added(), ElementsAre(entry(0x3A29001F, 4))) << "the plain one is in place";
}

TEST_F(OLMMsgContactAddressesObjectTest, RethrownFailureKeepsItsMessage) {
    begin(contact());
    const BrokenMapping broken(writer->namedProps);

    try {
        writer->handleNamedStrProp(wide(u"x"), 0x8045001F);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const qor::Exception& failure) {
        EXPECT_EQ(failure.code, qor::errorIndex);
        EXPECT_STREQ(failure.message(), "Array.set: requested index is out of range");
    }
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgContactAddressesObjectTest, AddressGroupThrowsEveryFailureOfTheMapping) {
    begin(contact()
              .element("a")
              .attribute(addressAttribute, "a@x")
              .element("b")
              .attribute(addressAttribute, "b@x"));

    EXPECT_EQ(thrownCode([&] { writer->handleEmailAddress(2, unknownName, *parser); }),
              unknownCode);
    OLMXMLTag closing;
    ASSERT_EQ(parser->nextTag(closing), 1);
    const BrokenMapping broken(writer->namedProps);
    EXPECT_EQ(thrownCode([&] { writer->handleEmailAddress(2, 0x8083001F, *parser); }),
              qor::errorIndex);
    EXPECT_THAT(added(), IsEmpty());
}

// --- Streams that can't be made.

TEST_F(OLMMsgContactAddressesObjectTest, StreamThatCannotBeMadeLosesOnlyItsProperty) {
    ItemDocument item = contact();
    item.element(businessCity, "Port").element(homeCity, "Fjord");
    item.element("OPFContactCopyCustom1Data", "one");
    item.open("OPFContactCopyDefaultEmailAddress")
        .element("contactEmailAddress")
        .attribute(addressAttribute, "a@x")
        .close();
    begin(item);

    // Streams in order: city plain and named, home city, custom data, mail address.
    const std::vector<std::vector<PropertyEntry>> left = {
        {entry(0x8000001F, 10), entry(0x3A59001F, 12), entry(0x8001001F, 8), entry(0x8002001F, 8)},
        {entry(0x3A27001F, 10), entry(0x3A59001F, 12), entry(0x8001001F, 8), entry(0x8002001F, 8)},
        {entry(0x3A27001F, 10), entry(0x8000001F, 10), entry(0x8001001F, 8), entry(0x8002001F, 8)},
        {entry(0x3A27001F, 10), entry(0x8000001F, 10), entry(0x3A59001F, 12), entry(0x8002001F, 8)},
        {entry(0x3A27001F, 10), entry(0x8000001F, 10), entry(0x3A59001F, 12), entry(0x8001001F, 8)},
    };
    const auto extract = [&](int failing) {
        ItemRun run;
        // Before these come the three streams of the names and the two that every message has.
        run.prepare = [failing](FakeHost& each) {
            each.failCall(CallKind::CreateStream, 5 + failing);
        };
        return writeItem(item, run);
    };
    for (int failing = 0; failing < 5; ++failing) {
        SCOPED_TRACE(testing::Message() << "failing stream " << failing);
        const StoredMessage message = extract(failing);

        EXPECT_EQ(ownEntries(message), left[static_cast<size_t>(failing)]);
        EXPECT_EQ(wholeAddress(message, wholeBusiness), utf16(u"Port"));
        EXPECT_EQ(wholeAddress(message, wholeHome), utf16(u"Fjord"));
    }
}

TEST(OLMMsgContactAddressesTest, WholeAddressWithoutAStreamLosesOnlyItsProperty) {
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateStream, 5); };

    const StoredMessage message = writeItem(contact(), run);

    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(contactKind) + entryBytes({entry(0x8001001F, 2)}));
    EXPECT_FALSE(message.has("__substg1.0_8000001F"));
}
