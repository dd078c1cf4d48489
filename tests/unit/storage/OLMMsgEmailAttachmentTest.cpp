#include "filter/storage/OLMMsgEmailAttachment.h"

#include "tests/fakehost/FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace fakehost;
using testing::ElementsAre;

namespace {

struct NameCase {
    const char* name;
    unsigned int number;
    const char* storage;
};

class OLMMsgEmailAttachmentTest : public testing::Test {
protected:
    FakeHost host;
    HostStream* root = host.newRoot();
};

class OLMMsgEmailAttachmentNameTest : public OLMMsgEmailAttachmentTest,
                                      public testing::WithParamInterface<NameCase> {};

} // namespace

TEST_P(OLMMsgEmailAttachmentNameTest, StorageIsNamedAfterItsNumberInEightDigits) {
    { const OLMMsgEmailAttachment sub(root, GetParam().number); }

    const std::string storage = GetParam().storage;
    EXPECT_THAT(host.message().paths(), ElementsAre(storage, storage + "/__properties_version1.0"));
    EXPECT_EQ(host.message().stream(storage + "/__properties_version1.0"), Bytes(8));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, OLMMsgEmailAttachmentNameTest,
    testing::Values(NameCase{"First", 0, "__attach_version1.0_#00000000"},
                    NameCase{"Ten", 10, "__attach_version1.0_#0000000A"},
                    NameCase{"TwoDigits", 255, "__attach_version1.0_#000000FF"},
                    NameCase{"AllDigits", 0x89ABCDEF, "__attach_version1.0_#89ABCDEF"}),
    [](const auto& row) { return row.param.name; });

TEST_F(OLMMsgEmailAttachmentTest, SeveralStandBesideEachOther) {
    {
        OLMMsgEmailAttachment first(root, 0);
        first.addProperty(0x3000, 1);
    }
    {
        OLMMsgEmailAttachment second(root, 1);
        second.addProperty(0x3000, 2);
    }

    EXPECT_THAT(host.message().names(),
                ElementsAre("__attach_version1.0_#00000000", "__attach_version1.0_#00000001"));
    EXPECT_THAT(host.message().subEntries("__attach_version1.0_#00000000"),
                ElementsAre(PropertyEntry{0x30000003, 6, 1}));
    EXPECT_THAT(host.message().subEntries("__attach_version1.0_#00000001"),
                ElementsAre(PropertyEntry{0x30000003, 6, 2}));
}
