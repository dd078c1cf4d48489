#include "filter/core/NumberReader.h"

#include <algorithm>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "filter/core/String.h"
#include "filter/core/WString.h"

namespace {

constexpr int64_t largest = std::numeric_limits<int64_t>::max();
constexpr int64_t smallest = std::numeric_limits<int64_t>::min();

struct NumberCase {
    const char* text;
    int64_t number;
    int end; // the position after the number
};

void PrintTo(const NumberCase& row, std::ostream* out) {
    *out << '"' << row.text << '"';
}

class DecimalTexts : public testing::TestWithParam<NumberCase> {};

// A number with its radix; the text is read from its start.
struct RadixCase {
    const char* text;
    int64_t number;
    int radix;
    int end;
};

int64_t decimal(const std::string& text) {
    return qor::NumberReader<char>(text.data(), static_cast<int>(text.size())).read(0, nullptr, 10);
}

} // namespace

TEST_P(DecimalTexts, AreTheSameNumberAsNarrowAndAsWideText) {
    const NumberCase& row = GetParam();
    int narrowEnd = -99;
    int wideEnd = -99;

    EXPECT_EQ(qor::String(row.text).toLong(0, &narrowEnd, 10), row.number);
    EXPECT_EQ(qor::WString(row.text).toLong(0, &wideEnd, 10), row.number);
    EXPECT_EQ(narrowEnd, row.end);
    EXPECT_EQ(wideEnd, row.end);
    EXPECT_EQ(qor::WString(row.text).toLong(0, nullptr, 10), row.number);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Digits, DecimalTexts, testing::Values(
    NumberCase{"0",                    0,        1},
    NumberCase{"1",                    1,        1},
    NumberCase{"-1",                   -1,       2},
    NumberCase{"+7",                   7,        2},
    NumberCase{"900",                  900,      3},
    NumberCase{"007",                  7,        3},
    NumberCase{"-0",                   0,        2},
    NumberCase{"12abc",                12,       2},
    NumberCase{"12 34",                12,       2},
    NumberCase{"4294967295",           4294967295LL, 10},
    NumberCase{"2147483648",           2147483648LL, 10}));

INSTANTIATE_TEST_SUITE_P(WhiteSpace, DecimalTexts, testing::Values(
    NumberCase{" \t\n\v\f\r5",         5,        7},
    NumberCase{"  -5  ",               -5,       4},
    NumberCase{"\x08" "5",             0,        0},
    NumberCase{"\x0E" "5",             0,        0},
    NumberCase{"\xC2\xA0" "5",         0,        0}, // a no-break space is not white space
    NumberCase{"- 5",                  0,        0}));

INSTANTIATE_TEST_SUITE_P(ScientificForms, DecimalTexts, testing::Values(
    NumberCase{"1E0",                  1,        3},
    NumberCase{"0E0",                  0,        3},
    NumberCase{"2.7E1",                27,       5},
    NumberCase{"9.6904E4",             96904,    8},
    NumberCase{"2e3",                  2000,     3},
    NumberCase{"2E+3",                 2000,     4},
    NumberCase{"-2.5E+2",              -250,     7},
    NumberCase{"1234E-2",              12,       7},
    NumberCase{"1.9",                  1,        3},
    NumberCase{"-1.9",                 -1,       4},
    NumberCase{"0.999999999999999999999999", 0,  26},
    NumberCase{"1.23E1",               12,       6},
    NumberCase{"0.00123E3",            1,        9},
    NumberCase{"0.00123E5",            123,      9},
    NumberCase{"0.00123E6",            1230,     9},
    NumberCase{"100E-3",               0,        6},
    NumberCase{"100E-2",               1,        6},
    NumberCase{"0E99999999999999999999", 0,      22},
    // 0.29 has no exact binary form: no digit may be lost.
    NumberCase{"0.29E2",               29,       6},
    NumberCase{"1.001E3",              1001,     7},
    NumberCase{"922337203685477580.7E1", 9223372036854775807LL, 22}));

INSTANTIATE_TEST_SUITE_P(BrokenForms, DecimalTexts, testing::Values(
    NumberCase{"",                     0,        0},
    NumberCase{"   ",                  0,        0},
    NumberCase{"abc",                  0,        0},
    NumberCase{"+",                    0,        0},
    NumberCase{"+-5",                  0,        0},
    NumberCase{"E5",                   0,        0},
    NumberCase{".5",                   0,        0},
    NumberCase{".5E1",                 0,        0},
    NumberCase{"-.5",                  0,        0},
    NumberCase{"5.",                   5,        1},
    NumberCase{"5.E2",                 5,        1},
    NumberCase{"5.x",                  5,        1},
    NumberCase{"5E",                   5,        1},
    NumberCase{"5Ex",                  5,        1},
    NumberCase{"5E+",                  5,        1},
    NumberCase{"5E-x",                 5,        1},
    NumberCase{"5.5E",                 5,        3},
    NumberCase{"5.5.5",                5,        3},
    NumberCase{"5E1.9",                50,       3},
    NumberCase{"5E1E1",                50,       3},
    NumberCase{"1,000",                1,        1},
    NumberCase{"0x10",                 0,        1},
    NumberCase{"true",                 0,        0},
    NumberCase{"NaN",                  0,        0},
    NumberCase{"Infinity",             0,        0}));

INSTANTIATE_TEST_SUITE_P(Limits, DecimalTexts, testing::Values(
    NumberCase{"9223372036854775806",  largest - 1,  19},
    NumberCase{"9223372036854775807",  largest,      19},
    NumberCase{"9223372036854775808",  largest,      19},
    NumberCase{"9223372036854775810",  largest,      19},
    NumberCase{"18446744073709551617", largest,      20},
    NumberCase{"-9223372036854775807", smallest + 1, 20},
    NumberCase{"-9223372036854775808", smallest,     20},
    NumberCase{"-9223372036854775809", smallest,     20},
    NumberCase{"-99999999999999999999999", smallest, 24},
    NumberCase{"9.223372036854775807E18", largest,   23},
    NumberCase{"9.223372036854775806E18", largest - 1, 23},
    NumberCase{"-9.223372036854775808E18", smallest, 24},
    NumberCase{"1E18",                 1000000000000000000LL, 4},
    NumberCase{"1E19",                 largest,      4},
    NumberCase{"-1E19",                smallest,     5},
    NumberCase{"1E999999999",          largest,      11},
    NumberCase{"-1E999999999",         smallest,     12},
    NumberCase{"1E-999999999",         0,            12},
    NumberCase{"1E9223372036854775807", largest,     21},
    NumberCase{"1E-9223372036854775808", 0,          22},
    NumberCase{"1E99999999999999999999999999", largest, 28},
    NumberCase{"0.0000000001E999999999", largest,    22}));
// clang-format on

TEST(NumberReaderTest, ReadsFromTheGivenStart) {
    const qor::WString text("12 +34 x");
    int end = -99;

    EXPECT_EQ(text.toLong(1, &end, 10), 2);
    EXPECT_EQ(end, 2);
    EXPECT_EQ(text.toLong(2, &end, 10), 34);
    EXPECT_EQ(end, 6);
    EXPECT_EQ(text.toLong(6, &end, 10), 0);
    EXPECT_EQ(end, 6) << "white space is not a number";
}

TEST(NumberReaderTest, StartOutsideTheTextReturnsZeroAndTheStart) {
    const qor::WString text("123");

    for (const int start :
         {-1, 3, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        int end = -99;
        EXPECT_EQ(text.toLong(start, &end, 10), 0) << start;
        EXPECT_EQ(end, start);
    }
    EXPECT_EQ(qor::WString().toLong(0, nullptr, 10), 0);
    EXPECT_EQ(qor::String().toLong(0, nullptr, 10), 0);
}

TEST(NumberReaderTest, OtherRadicesTakeOnlyDigits) {
    // clang-format off
    const RadixCase rows[] = {
        {"101",              5,          2,  3},
        {"102",              2,          2,  2},
        {"777",              511,        8,  3},
        {"2EDA4D3B",         0x2EDA4D3B, 16, 8},
        {"ff.8",             255,        16, 2},
        {"1E2",              0x1E2,      16, 3},
        {"12E2",             10,         8,  2},
        {"11.1",             3,          2,  2},
        {"0x10",             0,          16, 1},
        {" zZ!",             1295,       36, 3},
        {"8000000000000000", largest,    16, 16},
        {"G",                0,          16, 0},
        {"",                 0,          16, 0},
    };
    // clang-format on
    for (const RadixCase& row : rows) {
        int end = -99;
        EXPECT_EQ(qor::WString(row.text).toLong(0, &end, row.radix), row.number) << row.text;
        EXPECT_EQ(end, row.end) << row.text;
    }
}

TEST(NumberReaderTest, InvalidRadixReturnsZero) {
    for (const int radix :
         {std::numeric_limits<int>::min(), -10, -1, 0, 1, 37, std::numeric_limits<int>::max()}) {
        int end = -99;
        EXPECT_EQ(qor::WString("11").toLong(0, &end, radix), 0) << radix;
        EXPECT_EQ(end, 0);
    }
}

TEST(NumberReaderTest, MillionsOfDigitsAreReadInOnePass) {
    const std::string zeros(2'000'000, '0');
    const std::string nines(2'000'000, '9');

    EXPECT_EQ(decimal(zeros + "7"), 7);
    EXPECT_EQ(decimal(nines), largest);
    EXPECT_EQ(decimal("1" + zeros + "E-2000000"), 1);
    EXPECT_EQ(decimal("12" + zeros + "E-2000001"), 1);
    EXPECT_EQ(decimal("0." + zeros + "42E2000002"), 42);
    EXPECT_EQ(decimal("0." + zeros + "42E2000001"), 4);
    EXPECT_EQ(decimal("1E" + zeros + "2"), 100);
    EXPECT_EQ(decimal("1E" + nines), largest);
    EXPECT_EQ(decimal("1E-" + nines), 0);
    EXPECT_EQ(decimal("1." + nines), 1);
    EXPECT_EQ(decimal("1" + std::string(2'000'000, ' ')), 1);
}

TEST(NumberReaderTest, ZeroUnitEndsTheNumber) {
    EXPECT_EQ(decimal(std::string("1\0002", 3)), 1);
}

TEST(NumberReaderTest, UnitsWithALowByteOfADigitAreNotDigits) {
    qor::WString text;
    const uint16_t units[] = {0x0131, 0xFF11, 0x0661, '1'};

    text.append(units, 4);

    EXPECT_EQ(text.toLong(0, nullptr, 10), 0);
    EXPECT_EQ(text.toLong(2, nullptr, 10), 0);
    EXPECT_EQ(text.toLong(3, nullptr, 10), 1);
}

TEST(NumberReaderTest, ReaderCanBeUsedAgain) {
    const std::string text = "-99999999999999999999 3";
    qor::NumberReader<char> reader(text.data(), static_cast<int>(text.size()));
    int end = 0;

    EXPECT_EQ(reader.read(0, &end, 10), smallest);
    EXPECT_EQ(reader.read(end, nullptr, 10), 3);
    EXPECT_EQ(reader.read(-1, nullptr, 10), 0);
}
