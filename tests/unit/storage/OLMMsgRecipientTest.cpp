#include "filter/storage/OLMMsgRecipient.h"

#include "tests/unit/storage/NumberedStorages.h"

namespace {

class OLMMsgRecipientNameTest : public testing::TestWithParam<StorageNumber> {};

} // namespace

TEST_P(OLMMsgRecipientNameTest, StorageIsNamedAfterItsNumberInEightDigits) {
    expectNameOfNumber<OLMMsgRecipient>("__recip_version1.0_#", GetParam());
}

INSTANTIATE_TEST_SUITE_P(Numbers, OLMMsgRecipientNameTest, testing::ValuesIn(storageNumbers),
                         rowName);

TEST(OLMMsgRecipientTest, StoragesAreSeparate) {
    expectSeparateStorages<OLMMsgRecipient>("__recip_version1.0_#");
}
