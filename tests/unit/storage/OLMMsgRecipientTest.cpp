#include "filter/storage/OLMMsgRecipient.h"

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

class OLMMsgRecipientTest : public testing::Test {
protected:
    FakeHost host;
    HostStream* root = host.newRoot();
};

class OLMMsgRecipientNameTest : public OLMMsgRecipientTest,
                                public testing::WithParamInterface<NameCase> {};

} // namespace

TEST_P(OLMMsgRecipientNameTest, StorageIsNamedAfterItsNumberInEightDigits) {
    { const OLMMsgRecipient sub(root, GetParam().number); }

    const std::string storage = GetParam().storage;
    EXPECT_THAT(host.message().paths(), ElementsAre(storage, storage + "/__properties_version1.0"));
    EXPECT_EQ(host.message().stream(storage + "/__properties_version1.0"), Bytes(8));
}

INSTANTIATE_TEST_SUITE_P(Numbers, OLMMsgRecipientNameTest,
                         testing::Values(NameCase{"First", 0, "__recip_version1.0_#00000000"},
                                         NameCase{"Ten", 10, "__recip_version1.0_#0000000A"},
                                         NameCase{"TwoDigits", 255, "__recip_version1.0_#000000FF"},
                                         NameCase{"AllDigits", 0x89ABCDEF,
                                                  "__recip_version1.0_#89ABCDEF"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(OLMMsgRecipientTest, SeveralStandBesideEachOther) {
    {
        OLMMsgRecipient first(root, 0);
        first.addProperty(0x3000, 1);
    }
    {
        OLMMsgRecipient second(root, 1);
        second.addProperty(0x3000, 2);
    }

    EXPECT_THAT(host.message().names(),
                ElementsAre("__recip_version1.0_#00000000", "__recip_version1.0_#00000001"));
    EXPECT_THAT(host.message().subEntries("__recip_version1.0_#00000000"),
                ElementsAre(PropertyEntry{0x30000003, 6, 1}));
    EXPECT_THAT(host.message().subEntries("__recip_version1.0_#00000001"),
                ElementsAre(PropertyEntry{0x30000003, 6, 2}));
}
