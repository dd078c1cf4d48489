#include "filter/core/Utf8.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/unit/RowName.h"

namespace {

std::vector<char32_t> codePointsOf(std::string_view bytes) {
    // A copy of exactly this length, so that a read past the end shows.
    const std::vector<char> exact(bytes.begin(), bytes.end());
    const char* position = exact.data();
    const char* end = position + exact.size();
    std::vector<char32_t> codePoints;
    while (position != end) {
        codePoints.push_back(qor::readUtf8(position, end));
    }
    return codePoints;
}

std::vector<char32_t> codePointsOf(const std::vector<uint16_t>& units) {
    const uint16_t* position = units.data();
    const uint16_t* end = position + units.size();
    std::vector<char32_t> codePoints;
    while (position != end) {
        codePoints.push_back(qor::readUtf16(position, end));
    }
    return codePoints;
}

constexpr char32_t bad = 0xFFFD;

struct Utf8Case {
    const char* name;
    std::string_view bytes;
    std::vector<char32_t> codePoints;
};

class Utf8Texts : public testing::TestWithParam<Utf8Case> {};

} // namespace

TEST_P(Utf8Texts, HaveTheirCodePoints) {
    EXPECT_EQ(codePointsOf(GetParam().bytes), GetParam().codePoints);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Valid, Utf8Texts, testing::Values(
    Utf8Case{"Ascii",          "a\x7F",                    {'a', 0x7F}},
    Utf8Case{"SmallestOfTwo",  "\xC2\x80",                 {0x80}},
    Utf8Case{"LargestOfTwo",   "\xDF\xBF",                 {0x7FF}},
    Utf8Case{"SmallestOfThree","\xE0\xA0\x80",             {0x800}},
    Utf8Case{"BeforeSurrogates", "\xED\x9F\xBF",           {0xD7FF}},
    Utf8Case{"AfterSurrogates",  "\xEE\x80\x80",            {0xE000}},
    Utf8Case{"LargestOfThree", "\xEF\xBF\xBF",             {0xFFFF}},
    Utf8Case{"SmallestOfFour", "\xF0\x90\x80\x80",         {0x10000}},
    Utf8Case{"LargestOfAll",   "\xF4\x8F\xBF\xBF",         {0x10FFFF}},
    Utf8Case{"Mixed",          "x\xC3\xA9\xE2\x82\xACy",   {'x', 0xE9, 0x20AC, 'y'}}),
    rowName);

// One replacement for each maximal part that could begin a valid sequence, one for each other
// byte: tables 3-8 to 3-11 of the Unicode Standard are among these.
INSTANTIATE_TEST_SUITE_P(Invalid, Utf8Texts, testing::Values(
    Utf8Case{"LoneContinuation",  "\x80" "a",                        {bad, 'a'}},
    Utf8Case{"InvalidLead",   "\xC0\xC1\xF5\xFF",                {bad, bad, bad, bad}},
    Utf8Case{"TruncatedTwo",          "\xC3",                            {bad}},
    Utf8Case{"TruncatedThree",        "\xE2\x82",                        {bad}},
    Utf8Case{"TruncatedFour",         "\xF0\x9F\x98",                    {bad}},
    Utf8Case{"InterruptedByAscii",        "\xE2\x82" "A",                    {bad, 'A'}},
    Utf8Case{"InterruptedByLead",         "\xE2\x82\xC3\xA9",                {bad, 0xE9}},
    Utf8Case{"OverlongOfTwo",     "\xC0\xAF",                        {bad, bad}},
    Utf8Case{"OverlongOfThree",   "\xE0\x80\xBF\xF0\x81\x82" "A",    {bad, bad, bad, bad, bad, bad, 'A'}},
    Utf8Case{"Surrogates",        "\xED\xA0\x80\xED\xBF\xBF\xED\xAF" "A",
                                  {bad, bad, bad, bad, bad, bad, bad, bad, 'A'}},
    Utf8Case{"AboveTheLast",       "\xF4\x91\x92\x93\xFF" "A" "\x80\xBF" "B",
                                  {bad, bad, bad, bad, bad, 'A', bad, bad, 'B'}},
    Utf8Case{"TruncatedSequences","\xE1\x80\xE2\xF0\x91\x92\xF1\xBF" "A",
                                  {bad, bad, bad, bad, 'A'}}),
    rowName);
// clang-format on

TEST(Utf8Test, PairOfSurrogatesIsOneCodePoint) {
    EXPECT_EQ(codePointsOf({'a', 0xD83D, 0xDE00, 'b'}), (std::vector<char32_t>{'a', 0x1F600, 'b'}));
    EXPECT_EQ(codePointsOf({0xD800, 0xDC00, 0xDBFF, 0xDFFF}),
              (std::vector<char32_t>{0x10000, 0x10FFFF}));
}

TEST(Utf8Test, LoneSurrogatesAreReplacedOneByOne) {
    EXPECT_EQ(codePointsOf({0xD83D}), std::vector<char32_t>{bad});
    EXPECT_EQ(codePointsOf({0xDE00, 'a'}), (std::vector<char32_t>{bad, 'a'}));
    EXPECT_EQ(codePointsOf({0xD83D, 'a'}), (std::vector<char32_t>{bad, 'a'}));
    EXPECT_EQ(codePointsOf({0xD83D, 0xD83D, 0xDE00}), (std::vector<char32_t>{bad, 0x1F600}));
    EXPECT_EQ(codePointsOf({0xDE00, 0xD83D}), (std::vector<char32_t>{bad, bad}));
}

TEST(Utf8Test, EveryCodePointSurvivesBothForms) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint == 0xD800) {
            codePoint = 0xE000;
        }
        uint16_t units[2];
        const uint16_t* unit = units;
        const int unitCount = qor::writeUtf16(codePoint, units);
        ASSERT_EQ(unitCount, codePoint < 0x10000 ? 1 : 2);
        ASSERT_EQ(qor::readUtf16(unit, units + unitCount), codePoint);
        ASSERT_EQ(unit, units + unitCount);

        std::string bytes;
        qor::appendUtf8(bytes, codePoint);
        const char* byte = bytes.data();
        ASSERT_EQ(qor::readUtf8(byte, bytes.data() + bytes.size()), codePoint);
        ASSERT_EQ(byte, bytes.data() + bytes.size());
    }
}

TEST(Utf8Test, WritesTheShortestForm) {
    std::string bytes;
    for (const char32_t codePoint : {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}) {
        qor::appendUtf8(bytes, codePoint);
    }

    EXPECT_EQ(bytes, "\x7F"
                     "\xC2\x80"
                     "\xDF\xBF"
                     "\xE0\xA0\x80"
                     "\xEF\xBF\xBF"
                     "\xF0\x90\x80\x80"
                     "\xF4\x8F\xBF\xBF");
}
