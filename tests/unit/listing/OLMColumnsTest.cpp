#include <gmock/gmock.h>

#include "filter/listing/OLMFieldsNode.h"
#include "tests/fakehost/Scan.h"

namespace {

using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::Scan;
using testing::ElementsAre;
using testing::ElementsAreArray;

// The fourteen columns take three calls each, in this order.
const std::vector<std::string> columnCalls = {
    "SoRtnColumnsBegin()",
    // 1, file name
    "SoRtnColumnType(25, 0x13689, 5)",
    "SoRtnColumnFormat(0, 0xC000000, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 2, sender
    "SoRtnColumnType(25, 0x1367C, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 3, first list
    "SoRtnColumnType(25, 0x1366A, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 4, second list
    "SoRtnColumnType(25, 0x1366B, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 5, subject
    "SoRtnColumnType(25, 0x1366D, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 6, sent
    "SoRtnColumnType(25, 0x1367D, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 7, received
    "SoRtnColumnType(25, 0x1367F, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 8, modified
    "SoRtnColumnType(25, 0x13681, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 9, organizer
    "SoRtnColumnType(25, 0x14F21, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 10, display name
    "SoRtnColumnType(25, 0x14E3F, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 11, title
    "SoRtnColumnType(25, 0x13676, 5)",
    "SoRtnColumnFormat(0, 0, 0x1000B)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 12, special 6
    "SoRtnColumnType(0, 0xFFFFFFFF, 0)",
    "SoRtnColumnFormat(0, 0x18000000, 1)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 13, special 7
    "SoRtnColumnType(0, 0xFFFFFFFF, 0)",
    "SoRtnColumnFormat(0, 0x1C000000, 1)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    // 14, locator
    "SoRtnColumnType(0, 19, 0)",
    "SoRtnColumnFormat(0, 0, 19)",
    "SoRtnColumnDone(79, 2, 0, 0)",
    "SoRtnColumnsEnd()",
};

class OLMColumnsTest : public testing::Test {
protected:
    FakeHost host;
    Scan scan{host};
};

TEST_F(OLMColumnsTest, FourteenColumnsAreDefinedInOrder) {
    OLMFieldsNode::defineOLMFields(scan.proc());

    EXPECT_THAT(host.callTexts(CallKind::Routine), ElementsAreArray(columnCalls));
}

TEST_F(OLMColumnsTest, SectionIsAnnouncedBeforeItsColumns) {
    std::vector<std::string> expected = {"SoRtnSectionType(10, 0, 0)",
                                         "SoRtnSectionName(\"Email Archive Section\")",
                                         "SoRtnCharset(0x14B00000)"};
    expected.insert(expected.end(), columnCalls.begin(), columnCalls.end());

    EXPECT_EQ(scan.section(), 0);

    EXPECT_THAT(host.callTexts(CallKind::Routine), ElementsAreArray(expected));
}

TEST_F(OLMColumnsTest, ColumnsTakeTheirNumbersFromTheCaller) {
    OLMDefineTextColumn(0x1234, 0x5678, scan.proc());
    OLMDefineSpecialColumn(3, scan.proc());

    EXPECT_THAT(host.callTexts(CallKind::Routine),
                ElementsAre("SoRtnColumnType(25, 0x1234, 5)",
                            "SoRtnColumnFormat(0, 0x5678, 0x1000B)", "SoRtnColumnDone(79, 2, 0, 0)",
                            "SoRtnColumnType(0, 0xFFFFFFFF, 0)",
                            "SoRtnColumnFormat(0, 0xC000000, 1)", "SoRtnColumnDone(79, 2, 0, 0)"));
}

} // namespace
