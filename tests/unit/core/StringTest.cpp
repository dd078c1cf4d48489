#include "filter/core/String.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "filter/core/WString.h"

namespace {

std::string bytesOf(const qor::String& text) {
    return std::string(text.value(), static_cast<size_t>(text.length()));
}

} // namespace

TEST(StringTest, NewTextIsEmptyAndTerminated) {
    const qor::String text;

    EXPECT_EQ(text.length(), 0);
    EXPECT_STREQ(text.value(), "");
}

TEST(StringTest, TakesTextUpToItsZeroByte) {
    EXPECT_EQ(bytesOf(qor::String("abc\0def")), "abc");
    EXPECT_EQ(bytesOf(qor::String("")), "");
    EXPECT_EQ(bytesOf(qor::String(static_cast<const char*>(nullptr))), "");
}

TEST(StringTest, TakesTheGivenNumberOfBytes) {
    EXPECT_EQ(bytesOf(qor::String("abcdef", 3)), "abc");
    EXPECT_EQ(bytesOf(qor::String("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(bytesOf(qor::String("abc", 0)), "");
    EXPECT_EQ(bytesOf(qor::String("abc", -1)), "");
    EXPECT_EQ(bytesOf(qor::String(nullptr, 5)), "");
}

TEST(StringTest, CopyIsIndependentAndMoveTakesTheText) {
    qor::String text("a text that is too long for any inline buffer");
    qor::String copy(text);
    const qor::String moved(std::move(text));

    copy = qor::String("other");

    EXPECT_EQ(bytesOf(moved), "a text that is too long for any inline buffer");
    EXPECT_EQ(bytesOf(copy), "other");
}

TEST(StringTest, EqualsAndHashCodeUseTheBytes) {
    const qor::String text("foobar");

    EXPECT_TRUE(text.equals(qor::String("foobar")));
    EXPECT_FALSE(text.equals(qor::String("foobaR")));
    EXPECT_FALSE(text.equals(qor::WString("foobar")));
    EXPECT_EQ(text.hashCode(), 0x3F9CF968);
    EXPECT_TRUE(text.toString() == text);
}

TEST(StringTest, ReadsTheNumberOfAChecksum) {
    EXPECT_EQ(qor::String("4294967295").toLong(0, nullptr, 10), 4294967295LL);
}

TEST(StringTest, BytesAbove127AreNotDigits) {
    EXPECT_EQ(qor::String("\xF1\xB2").toLong(0, nullptr, 36), 0);
    EXPECT_EQ(qor::String("1\xA0").toLong(0, nullptr, 10), 1);
}
