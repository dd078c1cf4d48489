#include "filter/core/CRC32Checksum.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

std::string sumOf(std::string_view bytes) {
    qor::CRC32Checksum sum;
    for (const char byte : bytes) {
        sum.update(static_cast<unsigned char>(byte));
    }
    return sum.getValue().value();
}

} // namespace

TEST(CRC32ChecksumTest, StartsAtZero) {
    EXPECT_EQ(sumOf(""), "0");
}

TEST(CRC32ChecksumTest, OnlyZeroBytesChangeNothing) {
    EXPECT_EQ(sumOf(std::string_view("\0\0\0", 3)), "0");
}

// Calculated by hand: eight steps over one set bit, which apply the polynomial once.
TEST(CRC32ChecksumTest, TopBitOfOneByteIsThePolynomial) {
    EXPECT_EQ(sumOf("\x80"), std::to_string(0xEDB88320U));
}

TEST(CRC32ChecksumTest, NineDigitsHaveThePublishedCheckValue) {
    EXPECT_EQ(sumOf("123456789"), std::to_string(0x2DFD2D88U));
}

TEST(CRC32ChecksumTest, NameOfKeywordsHasItsPropertyNumber) {
    const std::string name("K\0e\0y\0w\0o\0r\0d\0s\0", 16);

    EXPECT_EQ(sumOf(name), std::to_string(0x2EDA4D3BU));
}

TEST(CRC32ChecksumTest, ValueReadsBackAsA32BitNumber) {
    qor::CRC32Checksum sum;
    sum.update(0x80);

    EXPECT_EQ(sum.getValue().toLong(0, nullptr, 10), 0xEDB88320LL);
}

TEST(CRC32ChecksumTest, ReadingTheValueEarlyChangesNothing) {
    qor::CRC32Checksum sum;
    for (const char digit : std::string("123456789")) {
        sum.update(static_cast<unsigned char>(digit));
        (void)sum.getValue();
    }

    EXPECT_STREQ(sum.getValue().value(), std::to_string(0x2DFD2D88U).c_str());
}
