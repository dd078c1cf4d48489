#include "host/message/MessageNames.h"

#include <gtest/gtest.h>

#include "MessageBuilder.h"

namespace olmhost::test {
namespace {

const std::string commonSet = "08 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46";
const std::string noteSet = "0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46";

TEST(MessageNamesTest, NumberIsFoundInItsSet) {
    const MessageNames names(hex(commonSet + noteSet),
                             hex("01 85 00 00  06 00 00 00" // the first listed set
                                 "00 8B 00 00  08 00 01 00"),
                             {});

    ASSERT_TRUE(names.nameOf(0x8000).has_value());
    EXPECT_EQ(setText(names.nameOf(0x8000)->set), "{00062008-0000-0000-C000-000000000046}");
    EXPECT_EQ(names.nameOf(0x8000)->id, 0x8501U);
    EXPECT_FALSE(names.nameOf(0x8000)->isText);
    EXPECT_EQ(setText(names.nameOf(0x8001)->set), "{0006200E-0000-0000-C000-000000000046}");
    EXPECT_EQ(names.nameOf(0x8001)->id, 0x8B00U);
}

TEST(MessageNamesTest, TextIsReadAfterItsLength) {
    const MessageNames names({},
                             hex("00 00 00 00  05 00 00 00" // public strings
                                 "0C 00 00 00  03 00 01 00" // PS_MAPI
                                 ),
                             hex("06 00 00 00  41 00 42 00 43 00  00 00"
                                 "02 00 00 00  5A 00"));

    ASSERT_TRUE(names.nameOf(0x8000).has_value());
    EXPECT_EQ(names.nameOf(0x8000)->set, publicStringsSet());
    EXPECT_TRUE(names.nameOf(0x8000)->isText);
    EXPECT_EQ(names.nameOf(0x8000)->text, u"ABC");
    ASSERT_TRUE(names.nameOf(0x8001).has_value());
    EXPECT_EQ(names.nameOf(0x8001)->set, mapiSet());
    EXPECT_EQ(names.nameOf(0x8001)->text, u"Z");
}

TEST(MessageNamesTest, WhatPointsOutsideTheStreamsIsNotAName) {
    const std::string text = "03 00 00 00 41 00";
    struct Case {
        const char* what;
        std::string entry;
    };
    for (const auto& [what, entry] : {Case{"no set", "01 85 00 00 00 00 00 00"},
                                      Case{"set not listed", "01 85 00 00 08 00 00 00"},
                                      Case{"last set", "01 85 00 00 FE FF 00 00"},
                                      Case{"text after the end", "07 00 00 00 05 00 00 00"},
                                      Case{"text far after the end", "FF FF FF FF 05 00 00 00"},
                                      Case{"text cut off", "00 00 00 00 05 00 00 00"},
                                      Case{"cut entry", "01 85 00 00 06 00 00"}}) {
        SCOPED_TRACE(what);
        const MessageNames names(hex(commonSet), hex(entry), hex(text));
        EXPECT_FALSE(names.nameOf(0x8000).has_value());
    }
}

TEST(MessageNamesTest, OtherIdsHaveNoName) {
    const MessageNames names(hex(commonSet), hex("01 85 00 00 06 00 00 00"), {});

    EXPECT_FALSE(names.nameOf(0x0037).has_value());
    EXPECT_FALSE(names.nameOf(0x7FFF).has_value());
    EXPECT_TRUE(names.nameOf(0x8000).has_value());
    EXPECT_FALSE(names.nameOf(0x8001).has_value());
    EXPECT_FALSE(names.nameOf(0xFFFF).has_value());
}

} // namespace
} // namespace olmhost::test
