#include "filter/listing/OLMFieldsNode.h"

#include <memory>

#include <gmock/gmock.h>

#include "filter/core/Exception.h"
#include "filter/listing/OLMKindFields.h"
#include "filter/xml/OLMXMLParser.h"
#include "tests/fakehost/Scan.h"
#include "tests/fakehost/Text.h"

namespace {

using fakehost::appointment;
using fakehost::CallKind;
using fakehost::contact;
using fakehost::document;
using fakehost::FakeHost;
using fakehost::ItemDocument;
using fakehost::mail;
using fakehost::note;
using fakehost::patternText;
using fakehost::Row;
using fakehost::Scan;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

using Calls = std::vector<std::string>;

// The calls of an untagged empty cell: in columns 5 to 11, and in columns 2 to 4.
const Calls emptyTextCell = {"SoRtnCellBegin()", "SoRtnPutText(\"\", 0, 0x14B00000)",
                             "SoRtnCellEnd(13)"};
const Calls emptyAddressCell = {"SoRtnCellBegin()", "SoRtnCellEnd(13)"};

// Returns the calls of a tagged cell with `inner` in it.
Calls taggedCell(const std::string& index, const std::string& id, const Calls& inner) {
    Calls calls = {"SoRtnTagBegin(0x290004, " + index + ", " + id + ")", "SoRtnCharset(0x14B00000)",
                   "SoRtnCellBegin()"};
    calls.insert(calls.end(), inner.begin(), inner.end());
    calls.push_back("SoRtnTagEnd(0x290004, " + index + ")");
    calls.push_back("SoRtnCellEnd(13)");
    return calls;
}

Calls joined(const std::vector<Calls>& parts) {
    Calls all;
    for (const Calls& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

ItemDocument& addAddress(ItemDocument& source, const fakehost::Text& address) {
    return source.element("emailAddress")
        .attribute("OPFContactEmailAddressAddress", address)
        .attribute("OPFContactEmailAddressName", "a name");
}

ItemDocument addressGroup(ItemDocument source, const std::string& group,
                          const std::vector<std::string>& addresses) {
    source.open(group);
    for (const std::string& address : addresses) {
        addAddress(source, address);
    }
    return source.close();
}

constexpr char fromGroup[] = "OPFMessageCopyFromAddresses";
constexpr char toGroup[] = "OPFMessageCopyToAddresses";
constexpr char ccGroup[] = "OPFMessageCopyCCAddresses";
constexpr char subject[] = "OPFMessageCopySubject";

class OLMFieldsNodeTest : public testing::Test {
protected:
    // Returns all rows of an archive with this one document.
    std::vector<Row> list(const ItemDocument& source, const std::string& name = "a.xml") {
        host.entry(name, source);
        Scan scan(host);
        scan.run();
        EXPECT_EQ(scan.bails(), 0);
        return scan.rows();
    }

    Row listOne(const ItemDocument& source, const std::string& name = "a.xml") {
        const std::vector<Row> rows = list(source, name);
        EXPECT_THAT(rows, SizeIs(1));
        return rows.empty() ? Row() : rows[0];
    }

    // Returns the routine calls of the first row, including its break.
    Calls callsOfRow() const {
        Calls calls = host.callTexts(CallKind::Routine);
        const auto end = std::ranges::find(calls, "SoRtnBreak(5, 0)");
        calls.erase(end == calls.end() ? end : end + 1, calls.end());
        return calls;
    }

    FakeHost host;
};

// --- A row, call by call.

TEST_F(OLMFieldsNodeTest, FullRowMakesTheseCalls) {
    ItemDocument source = mail();
    source = addressGroup(source, ccGroup, {"c@x"});
    source = addressGroup(source, fromGroup, {"f@x"});
    source.element("OPFMessageCopyModDate", "2018-06-21T00:39:08");
    source.element("OPFMessageCopyReceivedTime", "2018-06-20T00:00:02");
    source.element("OPFMessageCopySentTime", "2018-06-20T00:00:01");
    source.element(subject, "Tide table");
    source = addressGroup(source, toGroup, {"t@x", "u@x"});
    source.element("empty1", "nobody").element("empty2", "none").element("empty3", "n");

    list(source, "Local/Inbox/m.xml");

    EXPECT_THAT(
        callsOfRow(),
        ElementsAreArray(joined({
            {"SoRtnCellBegin()", "SoRtnPutText(\"Local\\0Inbox\\0Tide table.msg\", 26, 0x14B00000)",
             "SoRtnCellEnd(13)"},
            taggedCell("0", "0x1367C", {"SoRtnPutText(\"f@x\", 3, 0x14B00000)"}),
            taggedCell("1", "0x1366A",
                       {"SoRtnPutText(\"t@x\", 3, 0x14B00000)", "SoRtnPutChar(59)",
                        "SoRtnPutText(\"u@x\", 3, 0x14B00000)"}),
            taggedCell("2", "0x1366B", {"SoRtnPutText(\"c@x\", 3, 0x14B00000)"}),
            taggedCell("3", "0x1366D", {"SoRtnPutText(\"Tide table\", 10, 0x14B00000)"}),
            taggedCell("4", "0x13683", {"SoRtnPutText(\"2018-06-20T00:00:01\", 19, 0x14B00000)"}),
            taggedCell("5", "0x1367F", {"SoRtnPutText(\"2018-06-20T00:00:02\", 19, 0x14B00000)"}),
            taggedCell("6", "0x13681", {"SoRtnPutText(\"2018-06-21T00:39:08\", 19, 0x14B00000)"}),
            taggedCell("7", "0x13727", {"SoRtnPutText(\"nobody\", 6, 0x14B00000)"}),
            taggedCell("8", "0x13675", {"SoRtnPutText(\"none\", 4, 0x14B00000)"}),
            taggedCell("9", "0x136D1", {"SoRtnPutText(\"n\", 1, 0x14B00000)"}),
            {"SoRtnPutValue(0x30000)", "SoRtnCellEnd(13)", "SoRtnPutValue(4)", "SoRtnCellEnd(13)",
             "SoRtnPutValue(16, 0, 1)", "SoRtnBreak(5, 0)"},
        })));
}

TEST_F(OLMFieldsNodeTest, EmptyRowMakesNoTagCalls) {
    list(mail(), "Inbox/m.xml");

    EXPECT_THAT(callsOfRow(),
                ElementsAreArray(joined({
                    {"SoRtnCellBegin()", "SoRtnPutText(\"Inbox\\0NONE.msg\", 14, 0x14B00000)",
                     "SoRtnCellEnd(13)"},
                    emptyAddressCell,
                    emptyAddressCell,
                    emptyAddressCell,
                    emptyTextCell,
                    emptyTextCell,
                    emptyTextCell,
                    emptyTextCell,
                    emptyTextCell,
                    emptyTextCell,
                    emptyTextCell,
                    {"SoRtnPutValue(0x30000)", "SoRtnCellEnd(13)", "SoRtnPutValue(4)",
                     "SoRtnCellEnd(13)", "SoRtnPutValue(16, 0, 1)", "SoRtnBreak(5, 0)"},
                })));
}

TEST_F(OLMFieldsNodeTest, TaggedTextsAreNumberedFrom0InEachRowWithoutGaps) {
    ItemDocument source = document("emails");
    for (int i = 0; i < 2; ++i) {
        source.open("email").element(subject, "s").element("OPFMessageCopyModDate", "d").close();
    }

    for (const Row& row : list(source)) {
        EXPECT_EQ(row.cells.at(4).tagIndex, 0U);
        EXPECT_EQ(row.cells.at(7).tagIndex, 1U);
    }
}

TEST_F(OLMFieldsNodeTest, EveryRoutineReceivesTheUserWords) {
    host.entry("a.xml", mail().element(subject, "s"));
    Scan scan(host);
    scan.section();
    scan.run();

    for (const fakehost::HostCall& call : host.calls()) {
        if (call.kind == CallKind::Routine) {
            EXPECT_EQ(call.user0, reinterpret_cast<uint64_t>(&scan)) << call.text;
            EXPECT_EQ(call.user1, Scan::user1Mark) << call.text;
        }
    }
}

// --- The item's file name.

TEST_F(OLMFieldsNodeTest, NamelessItemIsCalledNone) {
    const Row row = listOne(mail(), "Inbox/m.xml");

    EXPECT_EQ(row.cells.at(0).text, std::u16string(u"Inbox\0NONE.msg", 14));
}

TEST_F(OLMFieldsNodeTest, NameInTheRootFolderHasNoLevels) {
    EXPECT_EQ(listOne(mail().element(subject, "Tide table")).text(1), "Tide table.msg");
}

TEST_F(OLMFieldsNodeTest, OnlySlashesOfTheFolderBecomeLevels) {
    const Row row = listOne(mail().element(subject, "and/or"), "/a//b/m.xml");

    EXPECT_EQ(row.cells.at(0).text, std::u16string(u"\0a\0\0b\0and/or.msg", 16));
}

TEST_F(OLMFieldsNodeTest, ContactIsNamedByItsDisplayName) {
    const Row row = listOne(contact()
                                .element("OPFContactCopyBusinessTitle", "Harbour master")
                                .element("OPFContactCopyDisplayName", "Ann Na"));

    EXPECT_EQ(row.text(1), "Ann Na.msg");
    EXPECT_EQ(row.text(10), "Ann Na");
    EXPECT_EQ(row.text(11), "Harbour master");
}

// --- Items of a document.

TEST_F(OLMFieldsNodeTest, ItemsAreNumberedFrom1AndLocated) {
    host.entry("not a document", fakehost::Bytes{});
    const auto rows = list(document("notes").element("note").element("note").element("note"));

    ASSERT_THAT(rows, SizeIs(3));
    for (uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(rows[i].locator.size, 16U);
        EXPECT_EQ(rows[i].locator.entryIndex, 1U);
        EXPECT_EQ(rows[i].locator.itemNumber, i + 1);
        EXPECT_TRUE(rows[i].isComplete);
    }
}

TEST_F(OLMFieldsNodeTest, FieldsOfOneItemDoNotReachTheNext) {
    ItemDocument source = document("emails").open("email").element(subject, "one");
    source = addressGroup(source, toGroup, {"t@x"}).close().element("email");

    const auto rows = list(source);

    ASSERT_THAT(rows, SizeIs(2));
    EXPECT_EQ(rows[0].text(5), "one");
    EXPECT_EQ(rows[1].text(1), "NONE.msg");
    EXPECT_EQ(rows[1].text(3), "");
}

TEST_F(OLMFieldsNodeTest, OpeningTagOfAnItemInsideAnItemEndsIt) {
    const auto rows = list(document("emails")
                               .open("email")
                               .element(subject, "outer")
                               .open("email")
                               .element(subject, "inner"));

    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].text(5), "outer");
}

TEST_F(OLMFieldsNodeTest, ItemDirectlyAfterAnInnerOpeningTagIsAnItem) {
    const auto rows = list(document("emails")
                               .open("email")
                               .element(subject, "outer")
                               .open("email")
                               .open("email")
                               .element(subject, "innermost"));

    ASSERT_THAT(rows, SizeIs(2));
    EXPECT_EQ(rows[0].text(5), "outer");
    EXPECT_EQ(rows[1].text(5), "innermost");
    EXPECT_EQ(rows[1].locator.itemNumber, 2U);
}

TEST_F(OLMFieldsNodeTest, TagThatIsNotAnItemEndsTheDocument) {
    const auto rows = list(document("emails").element("email").element("other").element("email"));

    EXPECT_THAT(rows, SizeIs(1));
}

TEST_F(OLMFieldsNodeTest, DocumentWithoutItemsHasNoRows) {
    EXPECT_THAT(list(document("emails")), IsEmpty());
}

TEST_F(OLMFieldsNodeTest, ItemEndedByTheDocumentsEndIsARow) {
    const auto rows =
        list(document("emails").open("email").element(subject, "Tide").open("other").breakOff());

    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].text(5), "Tide");
}

// --- Texts.

TEST_F(OLMFieldsNodeTest, LaterElementReplacesTheTextOfAnEarlierOne) {
    EXPECT_EQ(listOne(mail().element(subject, "first").element(subject, "2nd")).text(5), "2nd");
}

TEST_F(OLMFieldsNodeTest, LaterEmptyElementKeepsTheEarlierText) {
    EXPECT_EQ(listOne(mail().element(subject, "first").element(subject)).text(5), "first");
}

TEST_F(OLMFieldsNodeTest, ElementsInsideUnknownOnesAreReadToo) {
    EXPECT_EQ(listOne(mail().open("other").element(subject, "deep")).text(5), "deep");
}

TEST_F(OLMFieldsNodeTest, TextOfUnknownElementsIsIgnored) {
    const Row row = listOne(mail().element("other", "text").element(subject, "s"));

    EXPECT_EQ(row.text(5), "s");
}

class OLMFieldsNodeLengthTest : public OLMFieldsNodeTest,
                                public testing::WithParamInterface<int> {};

TEST_P(OLMFieldsNodeLengthTest, CellsTakeTheLow16BitsOfTheirLength) {
    const auto length = static_cast<size_t>(GetParam());
    const std::u16string text = patternText(length);
    ItemDocument source = mail().element(subject, text).open(fromGroup);
    addAddress(source, text).close().open(toGroup);
    addAddress(source, text).close();

    const Row row = listOne(source);

    // The length of a cell loses its higher bits; the text itself is not truncated.
    const std::u16string shown = text.substr(0, length % 65536);
    EXPECT_TRUE(row.cells.at(4).text == shown);
    EXPECT_TRUE(row.cells.at(1).text == shown);
    EXPECT_TRUE(row.cells.at(2).text == shown);
    EXPECT_TRUE(row.cells.at(0).text ==
                (length == 0 ? u"NONE.msg" : (text + u".msg").substr(0, (length + 4) % 65536)));
    EXPECT_EQ(row.cells.at(4).tagId.has_value(), length != 0);
    EXPECT_EQ(row.cells.at(1).tagId.has_value(), length != 0);
    EXPECT_TRUE(row.cells.at(2).tagId.has_value());
}

INSTANTIATE_TEST_SUITE_P(Units, OLMFieldsNodeLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000, 65531, 65532, 65535, 65536,
                                         65537),
                         testing::PrintToStringParamName());

// --- One address.

TEST_F(OLMFieldsNodeTest, FirstAddressOfAGroupIsTheSender) {
    EXPECT_EQ(listOne(addressGroup(mail(), fromGroup, {"one", "two"})).text(2), "one");
}

TEST_F(OLMFieldsNodeTest, AddressAfterAnotherTagIsNotTheSender) {
    ItemDocument source = mail().open(fromGroup).element("other");
    addAddress(source, "one");

    EXPECT_EQ(listOne(source).text(2), "");
}

TEST_F(OLMFieldsNodeTest, EmptyGroupEndsAtItsClosingTag) {
    const Row row = listOne(mail().element(fromGroup).element(subject, "after"));

    EXPECT_EQ(row.text(2), "");
    EXPECT_EQ(row.text(5), "after");
}

TEST_F(OLMFieldsNodeTest, WhatFollowsASendersGroupIsRead) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"one", "two"});

    EXPECT_EQ(listOne(source.element(subject, "after")).text(5), "after");
}

TEST_F(OLMFieldsNodeTest, TextsInsideAnAddressGroupAreNotFields) {
    ItemDocument source = mail().open(fromGroup).element(subject, "in from").close();
    source.open(toGroup).element(subject, "in to").close();

    EXPECT_EQ(listOne(source).text(5), "");
}

TEST_F(OLMFieldsNodeTest, LaterSendersGroupReplacesTheAddress) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"one"});

    EXPECT_EQ(listOne(addressGroup(source, fromGroup, {"two"})).text(2), "two");
}

TEST_F(OLMFieldsNodeTest, EmptyAddressAttributeClearsTheAddress) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"one"});

    EXPECT_EQ(listOne(addressGroup(source, fromGroup, {""})).text(2), "");
}

TEST_F(OLMFieldsNodeTest, MissingAddressAttributeKeepsTheAddress) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"one"});
    source.open(fromGroup).element("emailAddress").attribute("OPFContactEmailAddressName", "x");

    EXPECT_EQ(listOne(source).text(2), "one");
}

TEST_F(OLMFieldsNodeTest, AddressWithoutAttributesKeepsTheAddress) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"one"});

    EXPECT_EQ(listOne(source.open(fromGroup).element("emailAddress")).text(2), "one");
}

TEST_F(OLMFieldsNodeTest, AttributeNamesAreComparedExactly) {
    ItemDocument source = mail().open(fromGroup).element("emailAddress");
    source.attribute("OPFContactEmailAddressaddress", "wrong case");
    source.attribute("OPFContactEmailAddressAddressX", "longer");
    source.attribute("OPFContactEmailAddressAddres", "shorter");

    EXPECT_EQ(listOne(source).text(2), "");
}

TEST_F(OLMFieldsNodeTest, FirstOfTwoAttributesOfANameIsUsed) {
    ItemDocument source = mail().open(fromGroup).element("emailAddress");
    source.attribute("x", "y").attribute("OPFContactEmailAddressAddress", "one");
    source.attribute("OPFContactEmailAddressAddress", "two");

    EXPECT_EQ(listOne(source).text(2), "one");
}

// --- Lists of addresses.

TEST_F(OLMFieldsNodeTest, EmptyAddressIsAnEmptyPlaceInItsList) {
    const Row row = listOne(addressGroup(mail(), toGroup, {"a", "", "c"}));

    EXPECT_EQ(row.text(3), "a;;c");
}

TEST_F(OLMFieldsNodeTest, AddressWithoutAttributesIsAPlaceInItsList) {
    ItemDocument source = mail().open(toGroup);
    addAddress(source, "a").element("emailAddress");

    EXPECT_EQ(listOne(source).text(3), "a;");
}

TEST_F(OLMFieldsNodeTest, EmptyGroupIsAnEmptyUntaggedCell) {
    const Row row = listOne(mail().element(toGroup).element(subject, "after"));

    EXPECT_EQ(row.text(3), "");
    EXPECT_FALSE(row.cells.at(2).tagId);
    EXPECT_EQ(row.text(5), "after");
}

TEST_F(OLMFieldsNodeTest, AddressesOfSeveralGroupsAddUp) {
    ItemDocument source = addressGroup(mail(), toGroup, {"a", "b"});

    EXPECT_EQ(listOne(addressGroup(source, toGroup, {"c"})).text(3), "a;b;c");
}

TEST_F(OLMFieldsNodeTest, AddressesInsideUnknownTagsOfAListCount) {
    ItemDocument source = mail().open(toGroup).open("other");
    addAddress(source, "a").close();
    addAddress(source, "b");

    EXPECT_EQ(listOne(source).text(3), "a;b");
}

TEST_F(OLMFieldsNodeTest, NamesAreNeverListed) {
    ItemDocument source = mail().open(toGroup).element("emailAddress");
    source.attribute("OPFContactEmailAddressName", "Ann Na");

    EXPECT_EQ(listOne(source).text(3), "");
}

TEST_F(OLMFieldsNodeTest, TenThousandAddressesAreAllListed) {
    ItemDocument source = mail().open(toGroup);
    std::string expected;
    for (int i = 0; i < 10'000; ++i) {
        addAddress(source, std::to_string(i));
        expected.append(i == 0 ? "" : ";").append(std::to_string(i));
    }

    EXPECT_EQ(listOne(source).text(3), expected);
}

TEST_F(OLMFieldsNodeTest, UnclosedGroupEndsTheItemAndKeepsItsAddresses) {
    ItemDocument source = mail().open(toGroup);
    addAddress(source, "a").breakOff();

    EXPECT_EQ(listOne(source).text(3), "a");
}

// --- Appointments.

TEST_F(OLMFieldsNodeTest, OrganizerIsTheSenderToo) {
    const Row row = listOne(appointment().element("OPFCalendarEventCopyOrganizer", "o@x"));

    EXPECT_EQ(row.text(9), "o@x");
    EXPECT_EQ(row.text(2), "o@x");
}

TEST_F(OLMFieldsNodeTest, EmptyOrganizerClearsTheSender) {
    ItemDocument source = appointment().open("empty4").element("appointmentAttendee");
    source.attribute("OPFCalendarAttendeeAddress", "s@x").close();

    EXPECT_EQ(listOne(source.element("OPFCalendarEventCopyOrganizer")).text(2), "");
}

TEST_F(OLMFieldsNodeTest, LaterEmptyOrganizerKeepsTheEarlierOne) {
    const Row row = listOne(appointment()
                                .element("OPFCalendarEventCopyOrganizer", "o@x")
                                .element("OPFCalendarEventCopyOrganizer"));

    EXPECT_EQ(row.text(9), "o@x");
    EXPECT_EQ(row.text(2), "o@x");
}

TEST_F(OLMFieldsNodeTest, AttendeesAreTheFirstList) {
    ItemDocument source = appointment().open("OPFCalendarEventCopyAttendeeList");
    for (const char* address : {"a", "b"}) {
        source.element("appointmentAttendee").attribute("OPFCalendarAttendeeAddress", address);
        // The attribute of a mail is ignored here.
        source.attribute("OPFContactEmailAddressAddress", "wrong");
    }

    EXPECT_EQ(listOne(source).text(3), "a;b");
}

// --- Nodes by themselves.

class OLMFieldsNodeDirectTest : public OLMFieldsNodeTest {
protected:
    OLMXMLParser& parse(const ItemDocument& source, const std::string& name = "Inbox/m.xml") {
        host.entry(name, source);
        scan = std::make_unique<Scan>(host);
        parser = std::make_unique<OLMXMLParser>(host.openArchive(), 0);
        OLMXMLTag root;
        parser->nextTag(root);
        return *parser;
    }

    // Returns special 7 of a mail with an element to which the test's tag map assigns code 19.
    uint32_t special7Of(const ItemDocument& source) {
        constexpr UTXML_STRVALPAIR rows[] = {{19, "sentFlag"}};
        OLMXMLParser& reader = parse(source);
        OLMEmailFields node(reader, scan->proc());
        reader.addTags(rows, 1);
        EXPECT_EQ(node.parseNode(reader), 1);
        node.translateNode(1);
        return scan->rows().at(0).special7;
    }

    std::unique_ptr<Scan> scan;
    std::unique_ptr<OLMXMLParser> parser;
};

TEST_F(OLMFieldsNodeDirectTest, TranslateReturnsTheAnswerToTheRowsBreak) {
    OLMXMLParser& reader = parse(note());
    OLMNoteFields node(reader, scan->proc());
    scan->onBreak = [](uint16_t code) { return code == BreakRow ? uint16_t{0xBEEF} : uint16_t{0}; };
    EXPECT_EQ(node.parseNode(reader), 1);

    EXPECT_EQ(node.translateNode(77), 0xBEEF);

    EXPECT_EQ(scan->rows().at(0).locator.itemNumber, 77U);
}

TEST_F(OLMFieldsNodeDirectTest, ParseReturns0WithoutAFurtherItem) {
    OLMXMLParser& reader = parse(document("notes").element("note"));
    OLMNoteFields first(reader, scan->proc());
    OLMNoteFields second(reader, scan->proc());

    EXPECT_EQ(first.parseNode(reader), 1);
    EXPECT_EQ(second.parseNode(reader), 0);
    EXPECT_EQ(second.parseNode(reader), 0);
}

TEST_F(OLMFieldsNodeDirectTest, ClearedNodeKeepsOnlyItsFolder) {
    ItemDocument source = addressGroup(mail().element(subject, "s"), fromGroup, {"f"});
    source = addressGroup(addressGroup(source, toGroup, {"t"}), ccGroup, {"c"});
    OLMXMLParser& reader = parse(source);
    OLMEmailFields node(reader, scan->proc());
    node.parseNode(reader);

    node.clearFields();

    node.translateNode(1);
    const Row& row = scan->rows().at(0);
    EXPECT_EQ(row.text(1), "Inbox/NONE.msg");
    for (size_t column = 2; column <= 11; ++column) {
        EXPECT_EQ(row.text(column), "");
        EXPECT_FALSE(row.cells.at(column - 1).tagId);
    }
}

TEST_F(OLMFieldsNodeDirectTest, MailOfCode19WithTheNumber0IsAnotherKind) {
    EXPECT_EQ(special7Of(mail().element("sentFlag", "0")), 11U);
}

TEST_F(OLMFieldsNodeDirectTest, MailOfCode19WithTextThatIsNotANumberIsAnotherKind) {
    EXPECT_EQ(special7Of(mail().element("sentFlag", "soon")), 11U);
}

TEST_F(OLMFieldsNodeDirectTest, MailOfCode19WithAnotherNumberStaysAMail) {
    EXPECT_EQ(special7Of(mail().element("sentFlag", "1E0")), 4U);
}

TEST_F(OLMFieldsNodeDirectTest, MailOfCode19WithoutTextStaysAMail) {
    EXPECT_EQ(special7Of(mail().element("sentFlag")), 4U);
}

TEST_F(OLMFieldsNodeDirectTest, RejectedTagTableThrowsItsStatus) {
    OLMXMLParser& reader = parse(mail());
    const auto codeOf = [&](auto make, int status) -> unsigned int {
        host.failCall(CallKind::AddTagMap, 0, status);
        try {
            make();
        } catch (const qor::Exception& thrown) {
            EXPECT_EQ(thrown.message(), nullptr);
            return thrown.code;
        }
        return 0;
    };
    PROC* proc = scan->proc();

    EXPECT_EQ(codeOf([&] { OLMEmailFields node(reader, proc); }, -1), 0xFFFFFFFFU);
    EXPECT_EQ(codeOf([&] { OLMCalFields node(reader, proc); }, -2), 0xFFFFFFFEU);
    EXPECT_EQ(codeOf([&] { OLMContactFields node(reader, proc); }, -3), 0xFFFFFFFDU);
    EXPECT_EQ(codeOf([&] { OLMTaskFields node(reader, proc); }, -4), 0xFFFFFFFCU);
    EXPECT_EQ(codeOf([&] { OLMNoteFields node(reader, proc); }, -5), 0xFFFFFFFBU);
    EXPECT_EQ(codeOf([&] { OLMContactGrpFields node(reader, proc); }, -32768), 0xFFFF8000U);
}

TEST_F(OLMFieldsNodeDirectTest, PositiveStatusOfTheTagTableIsIgnored) {
    OLMXMLParser& reader = parse(mail());
    host.failCall(CallKind::AddTagMap, 0, 5);

    OLMEmailFields node(reader, scan->proc());

    EXPECT_TRUE(host.hasFailed());
    node.translateNode(1);
    EXPECT_EQ(scan->rows().at(0).special7, 4U);
}

TEST_F(OLMFieldsNodeDirectTest, SingleAddressReportsWhetherItsEndWasFound) {
    ItemDocument source = addressGroup(mail(), fromGroup, {"a"});
    addAddress(source.open(fromGroup), "b").breakOff();
    OLMXMLParser& reader = parse(source);
    OLMEmailFields node(reader, scan->proc());
    OLMXMLTag tag;
    OLMEMailAddr address;
    reader.nextTag(tag);
    reader.nextTag(tag);

    EXPECT_EQ(node.readSingleAddress(reader, 7, address), 1);
    EXPECT_EQ(address.getAddress()[0], u'a');
    EXPECT_EQ(address.getNameLen(), 6);
    reader.nextTag(tag);
    EXPECT_EQ(node.readSingleAddress(reader, 7, address), 0);
    EXPECT_EQ(address.getAddress()[0], u'b');
    EXPECT_EQ(node.readSingleAddress(reader, 7, address), 0);
}

TEST_F(OLMFieldsNodeDirectTest, AddressListReportsWhetherItsEndWasFound) {
    ItemDocument source = addressGroup(mail(), toGroup, {"a"});
    addAddress(source.open(toGroup), "b").breakOff();
    OLMXMLParser& reader = parse(source);
    OLMEmailFields node(reader, scan->proc());
    OLMXMLTag tag;
    qor::ArrayList<OLMEMailAddr*> addresses;
    reader.nextTag(tag);
    reader.nextTag(tag);

    EXPECT_EQ(node.readEmailAddrList(reader, 8, addresses), 1);
    EXPECT_EQ(addresses.size(), 1);
    reader.nextTag(tag);
    EXPECT_EQ(node.readEmailAddrList(reader, 8, addresses), 0);
    EXPECT_EQ(addresses.size(), 2);
    EXPECT_EQ(node.readEmailAddrList(reader, 8, addresses), 0);

    for (int i = 0; i < addresses.size(); ++i) {
        delete addresses.get(i);
    }
}

// --- Sweeps.

// Wherever the document breaks off, the scan ends and every row that began is complete.
TEST_F(OLMFieldsNodeTest, DocumentCutAfterAnyEventHasCompleteRows) {
    ItemDocument source = document("emails");
    for (const char* name : {"one", "two"}) {
        source.open("email").element(subject, name).element("other", "text");
        source = addressGroup(source, fromGroup, {"f"});
        source = addressGroup(source, toGroup, {"t", "u"});
        source.close();
    }
    ASSERT_GT(source.eventCount(), 30U);

    size_t maxRows = 0;
    for (size_t events = 0; events <= source.eventCount(); ++events) {
        SCOPED_TRACE(events);
        FakeHost own;
        own.entry("a.xml", source.cutAfter(events));
        Scan scan(own);
        scan.run();
        EXPECT_EQ(scan.bails(), 0);
        for (const Row& row : scan.rows()) {
            EXPECT_TRUE(row.isComplete);
            EXPECT_EQ(row.cells.size(), 11U);
        }
        EXPECT_GE(scan.rows().size(), maxRows);
        maxRows = scan.rows().size();
        EXPECT_THAT(own.openHandleTexts(), testing::ElementsAre("archive"));
    }
    EXPECT_EQ(maxRows, 2U);
}

} // namespace
