#include "filter/writers/OLMMsgMailWriter.h"
#include "tests/unit/core/Wide.h"
#include "tests/unit/writers/MailMessages.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* toGroup = "OPFMessageCopyToAddresses";
constexpr const char* ccGroup = "OPFMessageCopyCCAddresses";
constexpr const char* bccGroup = "OPFMessageCopyBCCAddresses";
constexpr const char* fromGroup = "OPFMessageCopyFromAddresses";

// Adds a person to the open group.
ItemDocument& addPerson(ItemDocument& item, const Text& address, const Text& name) {
    return item.element("emailAddress")
        .attribute(addressAttribute, address)
        .attribute(nameAttribute, name);
}

// Returns a mail with one group of one person with this address and this name.
ItemDocument mailWith(const char* group, const Text& address, const Text& name) {
    ItemDocument item = mail().open(group);
    return addPerson(item, address, name).close();
}

// Adds a group of persons with these names and without addresses.
ItemDocument& addNames(ItemDocument& item, const char* group,
                       std::initializer_list<const char*> names) {
    item.open(group);
    for (const char* name : names) {
        item.element("emailAddress").attribute(nameAttribute, name);
    }
    return item.close();
}

// Returns a mail whose To group holds persons with these names.
ItemDocument mailToNames(std::initializer_list<const char*> names) {
    ItemDocument item = mail();
    return addNames(item, toGroup, names);
}

class OLMMsgMailAddressesObjectTest : public MailWriterTest {};

} // namespace

// --- The sender.

TEST(OLMMsgMailAddressesTest, SenderHasItsAddressBeforeItsName) {
    const StoredMessage message = writeItem(mail()
                                                .open(fromGroup)
                                                .element("emailAddress")
                                                .attribute(nameAttribute, "Fay Low")
                                                .attribute(typeAttribute, "0")
                                                .attribute(addressAttribute, "f@x"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0065001F, 8), entry(0x0042001F, 16)));
    EXPECT_EQ(message.stream("__substg1.0_0065001F"), utf16(u"f@x"));
    EXPECT_EQ(message.stream("__substg1.0_0042001F"), utf16(u"Fay Low"));
    EXPECT_EQ(countStorages(message, "__recip"), 0u);
}

TEST(OLMMsgMailAddressesTest, SenderWithOneAttributeHasOnlyThatProperty) {
    const StoredMessage address =
        writeItem(mail().open(fromGroup).element("a").attribute(addressAttribute, "f@x"));
    EXPECT_THAT(ownEntries(address), ElementsAre(entry(0x0065001F, 8)));
    EXPECT_FALSE(address.has("__substg1.0_0042001F"));

    const StoredMessage name =
        writeItem(mail().open(fromGroup).element("a").attribute(nameAttribute, "Fay"));
    EXPECT_THAT(ownEntries(name), ElementsAre(entry(0x0042001F, 8)));
    EXPECT_FALSE(name.has("__substg1.0_0065001F"));
}

TEST(OLMMsgMailAddressesTest, EmptyAttributesOfTheSenderAreEmptyStreamsOfSizeTwo) {
    const StoredMessage message = writeItem(mailWith(fromGroup, "", ""));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0065001F, 2), entry(0x0042001F, 2)));
    EXPECT_EQ(message.stream("__substg1.0_0065001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_0042001F"), Bytes());
}

TEST(OLMMsgMailAddressesTest, SenderGroupWithoutATagHasNoProperty) {
    const Outcome outcome = extractItem(mail().element(fromGroup));

    EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
    EXPECT_THAT(outcome.progress, ElementsAre(4, 100)) << "the group counts";
}

TEST(OLMMsgMailAddressesTest, OnlyTheFirstTagOfTheSenderGroupCounts) {
    const Outcome outcome = extractItem(mail()
                                            .open(fromGroup)
                                            .element("emailAddress")
                                            .attribute(addressAttribute, "f@x")
                                            .element("emailAddress")
                                            .attribute(addressAttribute, "g@x")
                                            .attribute(nameAttribute, "Gil"));

    EXPECT_THAT(ownEntries(outcome.message), ElementsAre(entry(0x0065001F, 8)));
    EXPECT_EQ(outcome.message.stream("__substg1.0_0065001F"), utf16(u"f@x"));
    EXPECT_THAT(outcome.progress, ElementsAre(4, 4, 4, 4, 4, 100));
}

TEST(OLMMsgMailAddressesTest, BrokenSenderGroupIsNotCounted) {
    const Outcome outcome = extractItem(mail().open(fromGroup).breakOff());

    EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
    EXPECT_THAT(outcome.progress, ElementsAre(0, 100));
}

TEST(OLMMsgMailAddressesTest, AttributesOfTheGroupItselfAreNotTheSender) {
    const StoredMessage message =
        writeItem(mail().open(fromGroup).attribute(addressAttribute, "f@x").element("a"));

    EXPECT_THAT(ownEntries(message), IsEmpty());
}

TEST_F(OLMMsgMailAddressesObjectTest, SenderStreamThatCannotBeMadeLosesOnlyItsProperty) {
    ItemDocument item = mail();
    for (int count = 0; count < 2; ++count) {
        item.open(fromGroup);
        addPerson(item, "f@x", "Fay").close();
    }
    begin(item);

    host.failCall(CallKind::CreateStream, 0);
    writer->writeNode(*parser);
    EXPECT_THAT(added(), ElementsAre(entry(0x0042001F, 8)));
    host.failCall(CallKind::CreateStream, 1);
    run();
    EXPECT_THAT(added(), ElementsAre(entry(0x0042001F, 8), entry(0x0065001F, 8)));
    EXPECT_EQ(host.openHandles(), openBefore);
}

// --- One recipient.

TEST(OLMMsgMailAddressesTest, RecipientHasItsFourPropertiesInOrder) {
    const StoredMessage message = writeItem(mail()
                                                .open(toGroup)
                                                .element("emailAddress")
                                                .attribute(nameAttribute, "Ann Low")
                                                .attribute(typeAttribute, "0")
                                                .attribute(addressAttribute, "a@x"));

    const std::string storage = recipientStorage(0);
    EXPECT_THAT(message.names(storage),
                ElementsAre(propertyStream, "__substg1.0_3003001F", "__substg1.0_3001001F"));
    EXPECT_EQ(message.stream(storage + "/" + propertyStream),
              hex("00 00 00 00 00 00 00 00"
                  "03 00 00 30  06 00 00 00  00 00 00 00 00 00 00 00"
                  "03 00 15 0C  06 00 00 00  01 00 00 00 00 00 00 00"
                  "1F 00 03 30  06 00 00 00  08 00 00 00 00 00 00 00"
                  "1F 00 01 30  06 00 00 00  10 00 00 00 00 00 00 00"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3003001F)), utf16(u"a@x"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(u"Ann Low"));
    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(mailKind, 1) + hex("1F 00 04 0E  06 00 00 00  12 00 00 00 00 00 00 00") +
                  flagsEntry(0));
}

TEST(OLMMsgMailAddressesTest, AddressReplacesAMissingName) {
    const StoredMessage message =
        writeItem(mail().open(toGroup).element("a").attribute(addressAttribute, "a@x"));

    expectRecipient(message, 0, {.address = u"a@x", .name = u"a@x"});
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"a@x"));
}

TEST(OLMMsgMailAddressesTest, AddressReplacesAnEmptyName) {
    const StoredMessage message = writeItem(mailWith(toGroup, "a@x", ""));

    expectRecipient(message, 0, {.address = u"a@x", .name = u"a@x"});
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"a@x"));
}

TEST(OLMMsgMailAddressesTest, NameAloneHasNoAddress) {
    const StoredMessage message = writeItem(mailToNames({"Ann"}));

    expectRecipient(message, 0, {.name = u"Ann"});
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Ann"));
}

TEST(OLMMsgMailAddressesTest, EmptyAddressCountsAsMissing) {
    expectRecipient(writeItem(mailWith(toGroup, "", "Ann")), 0, {.name = u"Ann"});
}

TEST(OLMMsgMailAddressesTest, TagWithNeitherTakesANumberButIsNotInTheList) {
    ItemDocument item = mail().open(toGroup).element("emailAddress");
    addPerson(item, "", "").element("emailAddress").attribute(nameAttribute, "Ann");

    const StoredMessage message = writeItem(item);

    expectRecipient(message, 0, {});
    expectRecipient(message, 1, {});
    expectRecipient(message, 2, {.name = u"Ann"});
    EXPECT_EQ(message.stream(propertyStream).part(0, 32), headerBytes(3, 0));
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Ann"));
}

TEST(OLMMsgMailAddressesTest, AttributeNamesOfAnotherCaseOrLengthAreNotMatched) {
    const auto withNames = [](const char* group) {
        return mail()
            .open(group)
            .element("emailAddress")
            .attribute("opfContactEmailAddressAddress", "a@x")
            .attribute("OPFContactEmailAddressAddress2", "a@x")
            .attribute("OPFContactEmailAddressNam", "Ann")
            .attribute("OPFCONTACTEMAILADDRESSNAME", "Ann");
    };

    expectRecipient(writeItem(withNames(toGroup)), 0, {});
    EXPECT_THAT(ownEntries(writeItem(withNames(fromGroup))), IsEmpty());
}

TEST(OLMMsgMailAddressesTest, FirstOfTwoAttributesOfANameIsUsed) {
    const auto twice = [](const char* group) {
        return mail()
            .open(group)
            .element("emailAddress")
            .attribute(addressAttribute, "a@x")
            .attribute(addressAttribute, "second@x")
            .attribute(nameAttribute, "Ann")
            .attribute(nameAttribute, "Second");
    };

    expectRecipient(writeItem(twice(toGroup)), 0, {.address = u"a@x", .name = u"Ann"});
    EXPECT_THAT(ownEntries(writeItem(twice(fromGroup))),
                ElementsAre(entry(0x0065001F, 8), entry(0x0042001F, 8)));
}

// An empty first match is still the match.
TEST(OLMMsgMailAddressesTest, EmptyFirstAttributeHidesASecond) {
    const StoredMessage message = writeItem(mail()
                                                .open(toGroup)
                                                .element("emailAddress")
                                                .attribute(addressAttribute, "")
                                                .attribute(addressAttribute, "second@x"));

    expectRecipient(message, 0, {});
}

// --- Groups.

TEST(OLMMsgMailAddressesTest, SizeOfAListIsLargerThanItsStream) {
    const StoredMessage message = writeItem(mailToNames({"Ann", "Bob"}));

    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Ann; Bob"));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F").size(), 18u);
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 20)));
}

namespace {

struct GroupCase {
    const char* name;
    const char* element;
    uint64_t type;
    uint32_t displayTag;
    const char* displayStream;
};

class OLMMsgMailAddressesGroupTest : public testing::TestWithParam<GroupCase> {};

} // namespace

TEST_P(OLMMsgMailAddressesGroupTest, GroupHasItsTypeAndItsDisplayList) {
    const StoredMessage message = writeItem(mailWith(GetParam().element, "a@x", "Ann"));

    expectRecipient(message, 0, {.type = GetParam().type, .address = u"a@x", .name = u"Ann"});
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(GetParam().displayTag, 10)));
    EXPECT_EQ(message.stream(GetParam().displayStream), terminated(u"Ann"));
}

TEST_P(OLMMsgMailAddressesGroupTest, GroupWithoutATagHasAListOfItsTerminator) {
    for (const bool isSelfClosed : {true, false}) {
        ItemDocument item = mail();
        if (isSelfClosed) {
            item.element(GetParam().element);
        } else {
            item.open(GetParam().element).text(" \n ").close();
        }

        const StoredMessage message = writeItem(item.element("OPFMessageCopyBody", "b"));

        EXPECT_THAT(ownEntries(message),
                    ElementsAre(entry(GetParam().displayTag, 4), entry(0x1000001F, 4)));
        EXPECT_EQ(message.stream(GetParam().displayStream), hex("00 00"));
        EXPECT_EQ(countStorages(message, "__recip"), 0u);
    }
}

TEST_P(OLMMsgMailAddressesGroupTest, MissingGroupHasNoList) {
    ItemDocument item = mail();
    for (const char* group : {toGroup, ccGroup, bccGroup}) {
        if (std::string(group) != GetParam().element) {
            addNames(item, group, {"Ann"});
        }
    }

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(message, HasNoProperty(GetParam().displayTag));
    EXPECT_FALSE(message.has(GetParam().displayStream));
}

TEST_P(OLMMsgMailAddressesGroupTest, BrokenGroupIsWrittenUpToTheBreak) {
    const StoredMessage message = writeItem(mail()
                                                .open(GetParam().element)
                                                .element("emailAddress")
                                                .attribute(nameAttribute, "Ann")
                                                .open("emailAddress")
                                                .attribute(nameAttribute, "Bob")
                                                .breakOff());

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(GetParam().displayTag, 20)));
    EXPECT_EQ(message.stream(GetParam().displayStream), terminated(u"Ann; Bob"));
    EXPECT_EQ(message.stream(propertyStream).part(0, 32), headerBytes(2, 0));
}

INSTANTIATE_TEST_SUITE_P(
    Groups, OLMMsgMailAddressesGroupTest,
    testing::Values(GroupCase{"To", toGroup, 1, 0x0E04001F, "__substg1.0_0E04001F"},
                    GroupCase{"Cc", ccGroup, 2, 0x0E03001F, "__substg1.0_0E03001F"},
                    GroupCase{"Bcc", bccGroup, 3, 0x0E02001F, "__substg1.0_0E02001F"}),
    rowName);

TEST(OLMMsgMailAddressesTest, NumbersContinueAcrossTheGroupsInDocumentOrder) {
    ItemDocument item = mail();
    addNames(item, ccGroup, {"Cy"});
    addNames(item, bccGroup, {"Dee", "Di"});
    addNames(item, toGroup, {"Ann"});

    const StoredMessage message = writeItem(item);

    expectRecipient(message, 0, {.type = 2, .name = u"Cy"});
    expectRecipient(message, 1, {.type = 3, .name = u"Dee"});
    expectRecipient(message, 2, {.type = 3, .name = u"Di"});
    expectRecipient(message, 3, {.type = 1, .name = u"Ann"});
    EXPECT_EQ(message.stream(propertyStream).part(0, 32), headerBytes(4, 0));
    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x0E03001F, 8), entry(0x0E02001F, 18), entry(0x0E04001F, 10)));
    EXPECT_EQ(message.stream("__substg1.0_0E02001F"), terminated(u"Dee; Di"));
}

TEST(OLMMsgMailAddressesTest, EveryOpeningTagOfAGroupIsAPerson) {
    const StoredMessage message = writeItem(mail()
                                                .open(toGroup)
                                                .open("OPFMessageCopySubject")
                                                .attribute(nameAttribute, "Ann")
                                                .text("no subject")
                                                .element("stranger")
                                                .attribute(nameAttribute, "Bob")
                                                .close()
                                                .element("OPFMessageCopyCCAddresses")
                                                .attribute(nameAttribute, "Cy")
                                                .close()
                                                .element("OPFMessageCopyBody", "b"));

    EXPECT_EQ(countStorages(message, "__recip"), 3u);
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Ann; Bob; Cy"));
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 28), entry(0x1000001F, 4)));
}

TEST(OLMMsgMailAddressesTest, GroupEndsAtATagOfItsOwnKind) {
    const StoredMessage message = writeItem(mail()
                                                .open(toGroup)
                                                .element("a")
                                                .attribute(nameAttribute, "Ann")
                                                .open(toGroup)
                                                .attribute(nameAttribute, "inner")
                                                .element("a")
                                                .attribute(nameAttribute, "after"));

    EXPECT_EQ(countStorages(message, "__recip"), 1u);
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 10)));
}

// The end of the first group removes the list's last separator for good.
TEST(OLMMsgMailAddressesTest, SecondGroupOfAKindContinuesTheTruncatedList) {
    ItemDocument item = mail();
    addNames(item, toGroup, {"Ann"});
    addNames(item, toGroup, {"Bob", "Cy"});

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 10), entry(0x0E04001F, 24)));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"AnnBob; Cy"));
    EXPECT_EQ(message.stream(propertyStream).part(0, 32), headerBytes(3, 0));
}

TEST(OLMMsgMailAddressesTest, SecondGroupWithoutATagEmptiesTheList) {
    const StoredMessage message = writeItem(mailToNames({"Ann"}).element(toGroup));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 10), entry(0x0E04001F, 4)));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), hex("00 00"));
}

TEST(OLMMsgMailAddressesTest, SemicolonOfANameIsKeptInTheList) {
    const StoredMessage message = writeItem(mailToNames({"Low; Ann", "Bob;"}));

    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Low; Ann; Bob;"));
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, 2 * 14 + 4)));
}

// --- The operations by themselves.

TEST_F(OLMMsgMailAddressesObjectTest, OtherTagsAreNotGroupsAndNothingIsRead) {
    begin(mail().element("a").attribute(nameAttribute, "Ann"));
    for (const uint32_t id : {0U, 1U, 5U, 8U, 0x0037001FU, UTXML_UNKNOWN_TAG + 0U}) {
        SCOPED_TRACE(id);
        OLMXMLTag tag;
        tag.tagRecord.id = id;

        EXPECT_FALSE(writer->processAddressGrp(tag, *parser));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgMailAddressesObjectTest, TextGoesToTheListOfItsType) {
    begin(mail());
    qor::WString text("a");
    for (const unsigned int type : {1U, 2U, 2U, 3U, 0U, 4U}) {
        writer->appendRecipientVal(type, text);
    }

    EXPECT_EQ(writer->toDisplayList, qor::WString("a; "));
    EXPECT_EQ(writer->ccDisplayList, qor::WString("a; a; "));
    EXPECT_EQ(writer->bccDisplayList, qor::WString("a; "));
    EXPECT_THAT(host.calls(), IsEmpty());
}

namespace {

struct ListCase {
    const char* name;
    const char16_t* list;
    const char16_t* written;
};

class OLMMsgMailAddressesListTest : public MailWriterTest,
                                    public testing::WithParamInterface<ListCase> {};

} // namespace

TEST_P(OLMMsgMailAddressesListTest, ListIsTruncatedAtItsLastSemicolon) {
    begin(mail());
    qor::WString list = wide(GetParam().list);
    const Bytes expected = utf16(GetParam().written);

    EXPECT_EQ(writer->writeRecipientDisplay(0x0E04001F, list), expected.size() + 2);

    EXPECT_EQ(message().stream("__substg1.0_0E04001F"), expected + hex("00 00"));
    EXPECT_EQ(list, wide(GetParam().written));
    EXPECT_THAT(added(), IsEmpty()) << "the caller adds the entry";
    EXPECT_EQ(host.openHandles(), openBefore);
}

INSTANTIATE_TEST_SUITE_P(Lists, OLMMsgMailAddressesListTest,
                         testing::Values(ListCase{"Empty", u"", u""},
                                         ListCase{"One", u"Ann; ", u"Ann"},
                                         ListCase{"Two", u"Ann; Bob; ", u"Ann; Bob"},
                                         ListCase{"NoSemicolon", u"Ann", u""},
                                         ListCase{"InTheMiddle", u"Ann; Bob", u"Ann"},
                                         ListCase{"Only", u";", u""}),
                         rowName);

TEST_F(OLMMsgMailAddressesObjectTest, ListWithoutAStreamReturnsZeroAndIsNotTruncated) {
    begin(mail());
    qor::WString list("Ann; ");
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(writer->writeRecipientDisplay(0x0E04001F, list), 0u);

    EXPECT_EQ(list, qor::WString("Ann; "));
    EXPECT_EQ(host.countOf(CallKind::Write), 0);
}

// --- Failures of the host.

TEST_F(OLMMsgMailAddressesObjectTest, ListWithoutAStreamHasAnEntryOfSizeTwo) {
    begin(mailToNames({"Ann"}));
    // The recipient's property stream and its name come first.
    host.failCall(CallKind::CreateStream, 2);

    run();

    EXPECT_THAT(added(), ElementsAre(entry(0x0E04001F, 2)));
    EXPECT_FALSE(message().has("__substg1.0_0E04001F"));
    EXPECT_EQ(writer->recipientCount, 1);
}

TEST_F(OLMMsgMailAddressesObjectTest, TerminatorOfAListThatCannotBeWrittenThrowsAndCloses) {
    begin(mailToNames({"Ann"}));
    // Before it: the recipient's header, its name, three entries of three writes, the list.
    host.shortenWrite(1 + 1 + 9 + 1, 1, 0);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), shortWriteCode);
    EXPECT_EQ(host.openHandles(), openBefore);
    EXPECT_THAT(added(), IsEmpty());
}

TEST_F(OLMMsgMailAddressesObjectTest, RecipientStringWithoutAStreamLosesOnlyItsProperty) {
    ItemDocument item = mailWith(toGroup, "a@x", "Ann");
    begin(addNames(item, toGroup, {"Bob"}));
    // The address comes after the property stream.
    host.failCall(CallKind::CreateStream, 1);

    run();

    expectRecipient(message(), 0, {.name = u"Ann"});
    EXPECT_EQ(writer->recipientCount, 2);
}

TEST_F(OLMMsgMailAddressesObjectTest, NameWithoutAStreamIsStillInTheList) {
    begin(mailWith(toGroup, "a@x", "Ann"));
    host.failCall(CallKind::CreateStream, 2);

    run();

    expectRecipient(message(), 0, {.address = u"a@x"});
    EXPECT_EQ(message().stream("__substg1.0_0E04001F"), terminated(u"Ann"));
}

TEST_F(OLMMsgMailAddressesObjectTest, RecipientStorageThatCannotBeMadeThrowsTheHostsStatus) {
    begin(mailToNames({"Ann"}));
    host.failCall(CallKind::CreateStorage, 0, -42);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), static_cast<unsigned int>(-42));

    EXPECT_EQ(writer->recipientCount, 0);
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST(OLMMsgMailAddressesTest, RecipientStorageThatCannotBeMadeFailsTheRequest) {
    // The storage of named properties comes first.
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateStorage, 1, -42); };

    const Outcome outcome = extractItem(mailToNames({"Ann"}), run);

    expectFailedRequest(outcome);
}

TEST_F(OLMMsgMailAddressesObjectTest, RecipientIsClosedBeforeTheNext) {
    begin(mailToNames({"Ann", "Bob"}));
    run();

    const std::string first = recipientStorage(0);
    const std::string second = recipientStorage(1);
    EXPECT_THAT(host.callsOf("close"),
                ElementsAre("close(" + first + "/__substg1.0_3001001F)",
                            "close(" + first + "/__properties_version1.0)", "close(" + first + ")",
                            "close(" + second + "/__substg1.0_3001001F)",
                            "close(" + second + "/__properties_version1.0)",
                            "close(" + second + ")", "close(__substg1.0_0E04001F)"));
}

namespace {

// Records the calls of its overridable operations.
class WatchingMailWriter : public OLMMsgMailWriter {
public:
    using OLMMsgMailWriter::OLMMsgMailWriter;

    bool writeFromAddr(OLMXMLTag& tag) override {
        seen.emplace_back("from");
        return OLMMsgMailWriter::writeFromAddr(tag);
    }
    bool writeRecipientAddr(unsigned int type, OLMXMLTag& tag) override {
        seen.push_back("type " + std::to_string(type));
        return OLMMsgMailWriter::writeRecipientAddr(type, tag);
    }

    std::vector<std::string> seen;
};

} // namespace

TEST_F(OLMMsgMailAddressesObjectTest, GroupsCallTheOverridableOperations) {
    openDocument(mail()
                     .open(bccGroup)
                     .element("a")
                     .close()
                     .open(fromGroup)
                     .element("a")
                     .close()
                     .open(toGroup)
                     .element("a")
                     .close()
                     .open(ccGroup)
                     .element("a")
                     .element("a")
                     .close());
    WatchingMailWriter watching(&request, archive);
    watching.initilizeWriter(*parser);
    while (watching.writeNode(*parser) != 100) {
    }

    EXPECT_THAT(watching.seen, ElementsAre("type 3", "from", "type 1", "type 2", "type 2"));
}

// --- Text of every length.

namespace {

class OLMMsgMailAddressesLengthTest : public TextLengthTest {};

} // namespace

TEST_P(OLMMsgMailAddressesLengthTest, SenderIsWhole) {
    const StoredMessage message = writeItem(mailWith(fromGroup, text, text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0065001F, size), entry(0x0042001F, size)));
    EXPECT_EQ(message.stream("__substg1.0_0065001F"), utf16(text));
    EXPECT_EQ(message.stream("__substg1.0_0042001F"), utf16(text));
}

TEST_P(OLMMsgMailAddressesLengthTest, RecipientAndListAreWhole) {
    const StoredMessage message = writeItem(mailWith(toGroup, text, text));

    expectRecipient(message, 0,
                    text.empty() ? ExpectedRecipient{}
                                 : ExpectedRecipient{.address = text, .name = text});
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0E04001F, size + 2)));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(text));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgMailAddressesLengthTest, testing::ValuesIn(textLengths));
