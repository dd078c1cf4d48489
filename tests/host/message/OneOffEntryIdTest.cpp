#include "host/message/OneOffEntryId.h"

#include <gtest/gtest.h>

#include "MessageBuilder.h"

namespace olmhost::test {
namespace {

const std::string head = "00 00 00 00 81 2B 1F A4 BE A3 10 19 9D 6E 00 DD 01 0F 54 02 00 00 01 80";

Bytes usual() {
    return hex(head) + utf16({u"Mara\0SMTP\0m@x\0", 14});
}

TEST(OneOffEntryIdTest, ReturnsNameTypeAndAddress) {
    const auto found = decodeOneOffEntryId(usual());

    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->displayName, u"Mara");
    EXPECT_EQ(found->addressType, u"SMTP");
    EXPECT_EQ(found->address, u"m@x");
}

TEST(OneOffEntryIdTest, EmptyTextsAreTexts) {
    const auto found = decodeOneOffEntryId(hex(head + "00 00 00 00 00 00"));

    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->displayName + found->addressType + found->address, u"");
}

TEST(OneOffEntryIdTest, TruncatedValueIsNone) {
    Bytes value = usual();
    while (!value.empty()) {
        value.pop_back();
        EXPECT_FALSE(decodeOneOffEntryId(value).has_value()) << value.size() << " bytes";
    }
}

TEST(OneOffEntryIdTest, OtherProviderAndNarrowTextAreNone) {
    Bytes value = usual();
    value[4] = std::byte{0x80};
    EXPECT_FALSE(decodeOneOffEntryId(value).has_value());

    value = usual();
    value[23] = std::byte{0x00};
    EXPECT_FALSE(decodeOneOffEntryId(value).has_value());
}

} // namespace
} // namespace olmhost::test
