#include "filter/storage/OLMMsgEmailAttachment.h"

#include "tests/unit/storage/NumberedStorages.h"

namespace {

class OLMMsgEmailAttachmentNameTest : public testing::TestWithParam<StorageNumber> {};

} // namespace

TEST_P(OLMMsgEmailAttachmentNameTest, StorageIsNamedAfterItsNumberInEightDigits) {
    expectNameOfNumber<OLMMsgEmailAttachment>("__attach_version1.0_#", GetParam());
}

INSTANTIATE_TEST_SUITE_P(Numbers, OLMMsgEmailAttachmentNameTest, testing::ValuesIn(storageNumbers),
                         rowName);

TEST(OLMMsgEmailAttachmentTest, StoragesAreSeparate) {
    expectSeparateStorages<OLMMsgEmailAttachment>("__attach_version1.0_#");
}
