#include "filter/writers/OLMMsgContactWriter.h"
#include "tests/unit/writers/ContactMessages.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* defaultEmail = "OPFContactCopyDefaultEmailAddress";
constexpr const char* list1 = "OPFContactCopyEmailAddressList1";
constexpr const char* list2 = "OPFContactCopyEmailAddressList2";
constexpr const char* children = "OPFContactCopyChildren";

constexpr uint32_t childrensNames = 0x3A58101F;

} // namespace

// --- Groups of addresses.

TEST(OLMMsgContactGroupsTest, OnlyTheFirstTagOfAnAddressGroupCounts) {
    const Outcome outcome = extractItem(contact()
                                            .open(list1)
                                            .element("contactEmailAddress")
                                            .attribute(addressAttribute, "a@x")
                                            .element("contactEmailAddress")
                                            .attribute(addressAttribute, "bb@x")
                                            .element("contactEmailAddress")
                                            .attribute(addressAttribute, "ccc@x")
                                            .close()
                                            .element("OPFContactCopyTitle", "Dr"));

    EXPECT_THAT(ownEntries(outcome.message),
                ElementsAre(entry(0x8000001F, 8), entry(0x3A45001F, 6)));
    EXPECT_THAT(namedValues(outcome.message, 0x8093), ElementsAre(utf16(u"a@x")));
    EXPECT_THAT(outcome.progress, ElementsAre(1, 3, 3, 100));
}

TEST(OLMMsgContactGroupsTest, FirstTagWithoutAnAddressEndsTheSearch) {
    const StoredMessage message = writeItem(contact()
                                                .open(list1)
                                                .element("contactEmailAddress")
                                                .attribute(nameAttribute, "Ann")
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, "b@x")
                                                .close()
                                                .open(list2)
                                                .element("contactEmailAddress")
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, "c@x"));

    EXPECT_THAT(ownEntries(message), IsEmpty());
    EXPECT_EQ(nameStream(message, "00030102"), nameEntry(0x801B, 0) + nameEntry(0x801A, 1))
        << "no number is used up";
}

TEST(OLMMsgContactGroupsTest, NameAndTypeOfAnAddressAreNotRead) {
    const StoredMessage message = writeItem(contact()
                                                .open(defaultEmail)
                                                .element("contactEmailAddress", "text")
                                                .attribute(typeAttribute, "0")
                                                .attribute(nameAttribute, "Ann Low")
                                                .attribute(addressAttribute, "a@x"));

    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(contactKind) +
                  entryBytes({entry(0x8000001F, 8), entry(0x8001001F, 2), entry(0x8002001F, 2)}));
    EXPECT_EQ(message.stream("__substg1.0_8000001F"), utf16(u"a@x"));
}

TEST(OLMMsgContactGroupsTest, AttributeNamesAreExactAndTheFirstOfTwoIsUsed) {
    const StoredMessage message =
        writeItem(contact()
                      .open(defaultEmail)
                      .element("contactEmailAddress")
                      .attribute("opfContactEmailAddressAddress", "lower@x")
                      .attribute("OPFContactEmailAddressAddress2", "longer@x")
                      .attribute(addressAttribute, "a@x")
                      .attribute(addressAttribute, "b@x"));

    EXPECT_THAT(namedValues(message, 0x8083), ElementsAre(utf16(u"a@x")));
}

TEST(OLMMsgContactGroupsTest, EmptyAddressIsAnEmptyStreamOfSizeTwo) {
    const StoredMessage message = writeItem(contact()
                                                .open(defaultEmail)
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, ""));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 2)));
    EXPECT_THAT(namedValues(message, 0x8083), ElementsAre(Bytes()));
}

TEST(OLMMsgContactGroupsTest, InnerTagMayHaveAnyName) {
    const StoredMessage message = writeItem(contact()
                                                .open(defaultEmail)
                                                .element("OPFContactCopyTitle", "Dr")
                                                .attribute(addressAttribute, "a@x"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 8)));
}

TEST(OLMMsgContactGroupsTest, AddressBelowTheFirstTagIsIgnored) {
    const StoredMessage message = writeItem(contact()
                                                .open(defaultEmail)
                                                .open("list")
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, "a@x")
                                                .close()
                                                .close()
                                                .element("OPFContactCopyTitle", "Dr"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A45001F, 6)));
}

TEST(OLMMsgContactGroupsTest, AttributesOfTheGroupItselfAreNotAnAddress) {
    const StoredMessage message = writeItem(contact()
                                                .open(defaultEmail)
                                                .attribute(addressAttribute, "g@x")
                                                .element("contactEmailAddress"));

    EXPECT_THAT(ownEntries(message), IsEmpty());
}

TEST(OLMMsgContactGroupsTest, RepeatedGroupIsAPropertyEachTime) {
    ItemDocument item = contact();
    for (const char* address : {"a@x", "bb@x"}) {
        item.open(list2).element("a").attribute(addressAttribute, address).close();
    }

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000001F, 8), entry(0x8001001F, 10)));
    EXPECT_THAT(namedValues(message, 0x80A3), ElementsAre(utf16(u"a@x"), utf16(u"bb@x")));
}

TEST(OLMMsgContactGroupsTest, EmptyGroupSwallowsEverythingAfterIt) {
    const Outcome outcome = extractItem(contact()
                                            .element("OPFContactCopyFirstName", "Ann")
                                            .element(defaultEmail)
                                            .element("OPFContactCopyLastName", "Low")
                                            .element("OPFContactCopyHomeCity", "Fjord")
                                            .close()
                                            .open("contact")
                                            .element("OPFContactCopyFirstName", "Bea"));

    EXPECT_EQ(outcome.result, VwSpecialDone);
    EXPECT_EQ(outcome.message.stream(propertyStream),
              streamBegin(contactKind) +
                  entryBytes({entry(0x3A06001F, 8), entry(0x8000001F, 2), entry(0x8001001F, 2)}));
    EXPECT_EQ(outcome.message.stream("__substg1.0_3A06001F"), utf16(u"Ann"));
    EXPECT_THAT(outcome.progress, ElementsAre(1, 1, 3, 100));
}

TEST(OLMMsgContactGroupsTest, EmptyGroupEndsAtTheNextTagOfItsKind) {
    const StoredMessage message = writeItem(contact()
                                                .element(list1)
                                                .element("OPFContactCopyLastName", "Low")
                                                .open(list1)
                                                .element("contactEmailAddress")
                                                .attribute(addressAttribute, "a@x")
                                                .close()
                                                .element("OPFContactCopyTitle", "Dr"));

    // The second group's opening tag ends the first group, so its address is lost.
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A45001F, 6)));
}

TEST(OLMMsgContactGroupsTest, EmptyGroupMayEndInAnotherContact) {
    const StoredMessage message = writeItem(contact()
                                                .element("OPFContactCopyFirstName", "Ann")
                                                .element(list1)
                                                .close()
                                                .open("contact")
                                                .element("OPFContactCopyFirstName", "Bea")
                                                .element(list1)
                                                .element("OPFContactCopyLastName", "Low"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x3A06001F, 8), entry(0x3A11001F, 8)));
    EXPECT_EQ(message.stream("__substg1.0_3A06001F"), utf16(u"Ann"));
}

TEST(OLMMsgContactGroupsTest, BrokenGroupEndsWithTheDocument) {
    const Outcome withAddress = extractItem(contact()
                                                .open(list1)
                                                .open("contactEmailAddress")
                                                .attribute(addressAttribute, "a@x")
                                                .breakOff());
    EXPECT_THAT(ownEntries(withAddress.message), ElementsAre(entry(0x8000001F, 8)));
    EXPECT_THAT(namedValues(withAddress.message, 0x8093), ElementsAre(utf16(u"a@x")));
    EXPECT_THAT(withAddress.progress, ElementsAre(1, 100));

    const Outcome without = extractItem(contact().open(list1).breakOff());
    EXPECT_THAT(ownEntries(without.message), IsEmpty());
    EXPECT_THAT(without.progress, ElementsAre(1, 100)) << "the group counts";
}

// --- Children.

TEST(OLMMsgContactGroupsTest, ChildrenAreOneMultiValuedString) {
    const StoredMessage message = writeItem(contact()
                                                .open(children)
                                                .element("string", "Ida")
                                                .element("string", "Per Olav")
                                                .element("OPFContactCopyTitle", "Bo")
                                                .close()
                                                .element("OPFContactCopyTitle", "Dr"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 12), entry(0x3A45001F, 6)));
    EXPECT_EQ(message.stream(valueStream(childrensNames)), le32(8) + le32(18) + le32(6));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 0)), terminated(u"Ida"));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 1)), terminated(u"Per Olav"));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 2)), terminated(u"Bo"));
    EXPECT_THAT(message, HasText(0x3A45001F, u"Dr"));
}

TEST(OLMMsgContactGroupsTest, ChildrenWithoutTextTakeNoIndex) {
    const StoredMessage message = writeItem(contact()
                                                .open(children)
                                                .element("string")
                                                .element("string", "Ida")
                                                .element("string", "")
                                                .element("string", "Per")
                                                .element("string"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 8)));
    EXPECT_EQ(message.stream(valueStream(childrensNames)), le32(8) + le32(8));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 0)), terminated(u"Ida"));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 1)), terminated(u"Per"));
    EXPECT_FALSE(message.has(valueStream(childrensNames, 2)));
}

TEST(OLMMsgContactGroupsTest, EmptyGroupOfChildrenHasAnEntryAndAnEmptyLengthStream) {
    const StoredMessage message =
        writeItem(contact().element(children).element("OPFContactCopyTitle", "Dr"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 0), entry(0x3A45001F, 6)));
    EXPECT_EQ(message.stream(valueStream(childrensNames)), Bytes());
    EXPECT_FALSE(message.has(valueStream(childrensNames, 0)));
}

TEST(OLMMsgContactGroupsTest, ChildrenAtAnyDepthAreListed) {
    const StoredMessage message = writeItem(contact()
                                                .open(children)
                                                .open("string")
                                                .text("Ida")
                                                .element("string", "Per")
                                                .close()
                                                .close());

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 8)));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 0)), terminated(u"Ida"));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 1)), terminated(u"Per"));
}

TEST(OLMMsgContactGroupsTest, GroupOfChildrenInsideItselfEndsTheOuterOne) {
    const StoredMessage message = writeItem(contact()
                                                .open(children)
                                                .element("string", "Ida")
                                                .open(children)
                                                .text("Per")
                                                .element("string", "lost")
                                                .close()
                                                .close());

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 8)));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 1)), terminated(u"Per"));
    EXPECT_FALSE(message.has(valueStream(childrensNames, 2)));
}

TEST(OLMMsgContactGroupsTest, ChildrenBeforeTheBreakOfTheDocumentAreWritten) {
    const StoredMessage message = writeItem(
        contact().open(children).element("string", "Ida").open("string").text("Per").breakOff());

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 8)));
    EXPECT_EQ(message.stream(valueStream(childrensNames)), le32(8) + le32(8));
    EXPECT_EQ(message.stream(valueStream(childrensNames, 1)), terminated(u"Per"));

    const StoredMessage none = writeItem(contact().open(children).breakOff());
    EXPECT_THAT(ownEntries(none), ElementsAre(entry(childrensNames, 0)));
    EXPECT_EQ(none.stream(valueStream(childrensNames)), Bytes());
}

TEST(OLMMsgContactGroupsTest, ShortWriteOfAChildLeavesAnEntryOfZero) {
    ItemRun run;
    // The third write: after the message class and the first name comes its terminator.
    run.prepare = [](FakeHost& host) { host.shortenWrite(2, 1, 0); };

    const StoredMessage message =
        writeItem(contact().open(children).element("string", "Ida").element("string", "Per"), run);

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(childrensNames, 0)));
    EXPECT_EQ(message.stream(valueStream(childrensNames)), Bytes());
    EXPECT_FALSE(message.has(valueStream(childrensNames, 1)));
}

// --- Categories.

TEST(OLMMsgContactGroupsTest, CategoriesAreKeywordsAndEndAtTheirOwnTag) {
    const StoredMessage message = writeItem(contact()
                                                .open("OPFContactCopyCategoryList")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", "Sea")
                                                .element("category")
                                                .element("category")
                                                .attribute("OPFCategoryCopyName", "Family")
                                                .close()
                                                .element("OPFContactCopyTitle", "Dr"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x8000101F, 8), entry(0x3A45001F, 6)));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), le32(8) + le32(14));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000001"), terminated(u"Family"));
    EXPECT_EQ(nameStream(message, "00030102"),
              keywordsEntry(0) + nameEntry(0x801B, 1) + nameEntry(0x801A, 2));
}
