#include <array>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "tests/fakehost/Scan.h"

namespace {

using fakehost::Cell;
using fakehost::document;
using fakehost::FakeHost;
using fakehost::ItemDocument;
using fakehost::Row;
using fakehost::Scan;
using testing::ElementsAreArray;

// What the listing knows of a kind of item.
struct Kind {
    const char* title;
    const char* root;
    const char* item;
    uint32_t special6;
    uint32_t special7;
    uint64_t nameCode; // code of the text that names the item
    FakeHost::TagMap table;
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.title;
}

// clang-format off
const Kind kinds[] = {
    {"Email", "emails", "email", 0x30000, 4, 11, {
        {"OPFMessageCopyCCAddresses", 9},
        {"OPFMessageCopyFromAddresses", 7},
        {"OPFMessageCopyModDate", 14},
        {"OPFMessageCopyReceivedTime", 13},
        {"OPFMessageCopySentTime", 12},
        {"OPFMessageCopySubject", 11},
        {"OPFMessageCopyToAddresses", 8},
        {"email", 6},
        {"emailAddress", 10},
        {"empty1", 15},
        {"empty2", 16},
        {"empty3", 17}}},
    {"Appointment", "appointments", "appointment", 0x50000, 6, 11, {
        {"OPFCalendarEventCopyAttendeeList", 8},
        {"OPFCalendarEventCopyModDate", 14},
        {"OPFCalendarEventCopyOrganizer", 15},
        {"OPFCalendarEventCopySummary", 11},
        {"appointment", 6},
        {"appointmentAttendee", 10},
        {"empty1", 16},
        {"empty2", 17},
        {"empty3", 9},
        {"empty4", 7},
        {"empty5", 13},
        {"empty6", 12}}},
    {"Contact", "contacts", "contact", 0x40000, 5, 16, {
        {"OPFContactCopyBusinessTitle", 17},
        {"OPFContactCopyDisplayName", 16},
        {"OPFContactCopyModDate", 14},
        {"contact", 6},
        {"empty1", 8},
        {"empty2", 15},
        {"empty3", 11},
        {"empty4", 10},
        {"empty5", 9},
        {"empty6", 7},
        {"empty7", 13},
        {"empty8", 12}}},
    {"Task", "tasks", "task", 0x70000, 8, 11, {
        {"OPFTaskCopyModDate", 14},
        {"OPFTaskCopyName", 11},
        {"empty0", 8},
        {"empty1", 15},
        {"empty2", 10},
        {"empty3", 9},
        {"empty4", 7},
        {"empty5", 13},
        {"empty6", 12},
        {"empty7", 17},
        {"empty8", 16},
        {"task", 6}}},
    {"Note", "notes", "note", 0x60000, 7, 11, {
        {"OPFNoteCopyModDate", 14},
        {"OPFNoteCopyTitle", 11},
        {"empty0", 8},
        {"empty1", 15},
        {"empty2", 10},
        {"empty3", 9},
        {"empty4", 7},
        {"empty5", 13},
        {"empty6", 12},
        {"empty7", 17},
        {"empty8", 16},
        {"note", 6}}},
    {"Group", "groups", "group", 0x40000, 5, 11, {
        {"OPFGroupCopyDisplayName", 11},
        {"OPFGroupCopyModDate", 14},
        {"empty0", 17},
        {"empty1", 8},
        {"empty2", 15},
        {"empty3", 16},
        {"empty4", 10},
        {"empty5", 9},
        {"empty6", 7},
        {"empty7", 13},
        {"empty8", 12},
        {"group", 6}}},
};

// Tag ids of the columns 5 to 11, which show the codes 11 to 17.
constexpr uint32_t textTagIds[] = {0x1366D, 0x13683, 0x1367F, 0x13681, 0x13727, 0x13675, 0x136D1};
// clang-format on

class FieldTablesTest : public testing::TestWithParam<Kind> {
protected:
    static std::string elementOf(uint64_t code) {
        for (const auto& [name, value] : GetParam().table) {
            if (value == code) {
                return name;
            }
        }
        return {};
    }

    static ItemDocument item() { return document(GetParam().root).open(GetParam().item); }

    Row list(const ItemDocument& source) {
        host.entry("a.xml", source);
        Scan scan(host);
        scan.run();
        EXPECT_EQ(scan.rows().size(), 1U);
        return scan.rows().empty() ? Row() : scan.rows()[0];
    }

    FakeHost host;
};

TEST_P(FieldTablesTest, TableOfTwelveRowsIsAddedForEachNode) {
    list(item());

    // The parser's own map, one for the item, and one for the attempt after the last item.
    ASSERT_EQ(host.tagMaps().size(), 3U);
    EXPECT_THAT(host.tagMaps()[1], ElementsAreArray(GetParam().table));
    EXPECT_EQ(host.tagMaps()[2], host.tagMaps()[1]);
    EXPECT_EQ(host.tagMaps()[1].size(), 12U);
}

TEST_P(FieldTablesTest, EachCodeFrom6To17IsInTheTableOnce) {
    list(item());

    std::multiset<uint64_t> codes;
    for (const auto& [name, code] : host.tagMaps().at(1)) {
        codes.insert(code);
    }
    EXPECT_THAT(codes, testing::ElementsAre(6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17));
}

TEST_P(FieldTablesTest, EachTextElementFillsItsColumn) {
    for (uint64_t code = 11; code <= 17; ++code) {
        SCOPED_TRACE(elementOf(code));
        FakeHost own;
        own.entry("a.xml", item().element(elementOf(code), "some text"));
        Scan scan(own);
        scan.run();
        ASSERT_EQ(scan.rows().size(), 1U);
        const Row& row = scan.rows()[0];

        // An organizer is in the sender's column too.
        const bool isOrganizer = code == 15 && std::string(GetParam().title) == "Appointment";
        for (uint64_t other = 11; other <= 17; ++other) {
            const size_t column = other - 6;
            EXPECT_EQ(row.text(column), other == code ? "some text" : "");
            const Cell& cell = row.cells[column - 1];
            EXPECT_EQ(cell.tagId.has_value(), other == code);
            EXPECT_EQ(cell.tagId.value_or(textTagIds[other - 11]), textTagIds[other - 11]);
        }
        EXPECT_EQ(row.text(2), isOrganizer ? "some text" : "");
        EXPECT_EQ(row.text(1), code == GetParam().nameCode ? "some text.msg" : "NONE.msg");
    }
}

TEST_P(FieldTablesTest, SpecialValuesAreThoseOfTheKind) {
    const Row row = list(item());

    EXPECT_EQ(row.special6, GetParam().special6);
    EXPECT_EQ(row.special7, GetParam().special7);
}

// Kinds without addresses count the entries of their filler rows but read nothing from them.
TEST_P(FieldTablesTest, AddressGroupsHaveAddressesOnlyInMailsAndAppointments) {
    const std::string title = GetParam().title;
    const bool hasAddresses = title == "Email" || title == "Appointment";
    const std::string prefix = title == "Email" ? "OPFContactEmailAddress" : "OPFCalendarAttendee";
    ItemDocument source = item();
    for (const uint64_t code : {7, 8, 9}) {
        source.open(elementOf(code));
        for (const char* address : {"one", "two"}) {
            source.element(elementOf(10)).attribute(prefix + "Address", address);
            source.attribute(prefix + "Name", "a name");
        }
        source.close();
    }

    const Row row = list(source);

    EXPECT_EQ(row.text(2), hasAddresses ? "one" : "");
    EXPECT_EQ(row.text(3), hasAddresses ? "one;two" : ";");
    EXPECT_EQ(row.text(4), hasAddresses ? "one;two" : ";");
    EXPECT_EQ(row.cells[1].tagId, hasAddresses ? std::optional(0x1367CU) : std::nullopt);
    EXPECT_EQ(row.cells[2].tagId, 0x1366AU);
    EXPECT_EQ(row.cells[3].tagId, 0x1366BU);
}

TEST_P(FieldTablesTest, ElementsOfOtherKindsAreUnknown) {
    ItemDocument source = item();
    for (const Kind& other : kinds) {
        for (const auto& [name, code] : other.table) {
            if (name.starts_with("OPF") && !name.starts_with(elementOf(14).substr(0, 6))) {
                source.element(name, "text");
            }
        }
    }

    const Row row = list(source);

    EXPECT_EQ(row.text(1), "NONE.msg");
    for (size_t column = 2; column <= 11; ++column) {
        EXPECT_EQ(row.text(column), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FieldTablesTest, testing::ValuesIn(kinds),
                         [](const auto& row) { return row.param.title; });

} // namespace
