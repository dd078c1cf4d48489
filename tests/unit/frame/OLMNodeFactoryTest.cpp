#include "filter/frame/OLMNodeFactory.h"

#include <gmock/gmock.h>

#include "filter/frame/OLMXmlDumper.h"
#include "filter/listing/OLMKindFields.h"
#include "filter/writers/OLMMsgCalWriter.h"
#include "filter/writers/OLMMsgContactGrpWriter.h"
#include "filter/writers/OLMMsgContactWriter.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/writers/OLMMsgNoteWriter.h"
#include "filter/writers/OLMMsgTaskWriter.h"
#include "filter/xml/OLMXMLParser.h"
#include "tests/fakehost/Scan.h"

namespace {

using fakehost::FakeHost;
using fakehost::note;
using fakehost::Scan;
using testing::WhenDynamicCastTo;

class OLMNodeFactoryTest : public testing::Test {
protected:
    OLMNodeFactoryTest() : parser(host.entry("a.xml", note()).openArchive(), 0) {}

    template <typename Node> void expectFields(unsigned int type) {
        OLMNodeInt* node = OLMNodeFactory::newOLMFieldsNode(type, parser, scan.proc());
        EXPECT_THAT(node, WhenDynamicCastTo<Node*>(testing::NotNull())) << type;
        OLMNodeFactory::freeOLMNode(&node);
        EXPECT_EQ(node, nullptr);
    }

    template <typename Writer> void expectWriter(unsigned int type) {
        SODOSPECIALARC request{};
        OLMNodeWriter* writer = OLMNodeFactory::newOLMNodeWriter(type, scan.proc(), &request);
        EXPECT_THAT(writer, WhenDynamicCastTo<Writer*>(testing::NotNull())) << type;
        OLMNodeFactory::freeNodeWriter(&writer);
        EXPECT_EQ(writer, nullptr);
    }

    FakeHost host;
    Scan scan{host};
    OLMXMLParser parser;
};

TEST_F(OLMNodeFactoryTest, EachKindHasItsFields) {
    expectFields<OLMCalFields>(0);
    expectFields<OLMContactFields>(1);
    expectFields<OLMEmailFields>(2);
    expectFields<OLMNoteFields>(3);
    expectFields<OLMTaskFields>(4);
    expectFields<OLMContactGrpFields>(5);
}

TEST_F(OLMNodeFactoryTest, OtherKindsHaveNoFields) {
    for (const unsigned int type : {6U, 7U, 0x10002U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(OLMNodeFactory::newOLMFieldsNode(type, parser, scan.proc()), nullptr);
    }
}

TEST_F(OLMNodeFactoryTest, OtherKindsAreDumped) {
    for (const unsigned int type : {6U, 0x10003U, 0xFFFFFFFFU}) {
        expectWriter<OLMXmlDumper>(type);
    }
}

TEST_F(OLMNodeFactoryTest, EachKindHasItsWriter) {
    expectWriter<OLMMsgCalWriter>(0);
    expectWriter<OLMMsgContactWriter>(1);
    expectWriter<OLMMsgMailWriter>(2);
    expectWriter<OLMMsgNoteWriter>(3);
    expectWriter<OLMMsgTaskWriter>(4);
    expectWriter<OLMMsgContactGrpWriter>(5);
}

TEST_F(OLMNodeFactoryTest, FreeingNullIsHarmless) {
    OLMNodeInt* node = nullptr;
    OLMNodeWriter* writer = nullptr;

    OLMNodeFactory::freeOLMNode(&node);
    OLMNodeFactory::freeNodeWriter(&writer);

    EXPECT_EQ(node, nullptr);
    EXPECT_EQ(writer, nullptr);
}

} // namespace
