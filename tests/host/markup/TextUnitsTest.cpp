#include "host/markup/TextUnits.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using olmhost::TextUnits;

std::u16string converted(std::string_view text, std::size_t capacity) {
    TextUnits units;
    std::u16string all;
    while (!text.empty() || units.holdsHalf()) {
        std::vector<std::uint16_t> room(capacity);
        const std::size_t count = units.read(text, room.data(), capacity);
        all.append(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(count));
        if (count == 0) {
            break;
        }
    }
    return all;
}

TEST(TextUnitsTest, EveryCharacterAtTheEdgesOfItsLengthIsConverted) {
    const std::string text = "\x01\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x90\x80\x80"
                             "\xF4\x8F\xBF\xBF";
    const std::u16string expected{0x01,   0x7F,   0x80,   0x7FF,  0x800,
                                  0xFFFD, 0xD800, 0xDC00, 0xDBFF, 0xDFFF};
    for (const std::size_t capacity : {1U, 2U, 3U, 100U}) {
        EXPECT_EQ(converted(text, capacity), expected) << capacity;
    }
}

TEST(TextUnitsTest, PlainTextOfEveryLengthAndOffsetIsConverted) {
    for (std::size_t length = 0; length < 70; ++length) {
        for (std::size_t accent = 0; accent <= length; ++accent) {
            const std::string text =
                std::string(accent, 'a') + "\xC3\xA9" + std::string(length - accent, 'b');
            const std::u16string expected =
                std::u16string(accent, u'a') + u'\xE9' + std::u16string(length - accent, u'b');
            EXPECT_EQ(converted(text, 17), expected);
            EXPECT_EQ(converted(text, 1000), expected);
        }
    }
}

TEST(TextUnitsTest, InvalidBytesBecomeReplacements) {
    EXPECT_EQ(converted("a\x80z", 10), u"a\xFFFDz");
    EXPECT_EQ(converted("a\xC3", 10), u"a\xFFFD");
    EXPECT_EQ(converted("\xE2\x28z", 10), u"\xFFFD(z");
    EXPECT_EQ(converted("\xF7\xBF\xBF\xBFz", 10), u"\xFFFD\xFFFD\xFFFD\xFFFDz");
}

TEST(TextUnitsTest, AHeldHalfCanBeDropped) {
    TextUnits units;
    std::string_view text = "\xF0\x9F\x98\x80";
    std::uint16_t unit = 0;
    EXPECT_EQ(units.read(text, &unit, 1), 1U);
    EXPECT_EQ(unit, 0xD83D);
    EXPECT_TRUE(units.holdsHalf());
    units.dropHalf();
    EXPECT_EQ(units.read(text, &unit, 1), 0U);
}

} // namespace
