#include <cstring>

#include <gmock/gmock.h>

#include "filter/olmfilter.h"
#include "tests/fakehost/Bytes.h"

namespace {

using fakehost::Bytes;
using fakehost::bytesOf;
using fakehost::hex;

struct InfoCase {
    uint16_t request;
    Bytes answer; // empty: unknown request
};

void PrintTo(const InfoCase& row, std::ostream* out) {
    *out << row.request;
}

class FilterInfoTest : public testing::TestWithParam<InfoCase> {};

TEST_P(FilterInfoTest, OnlyTheAnswerIsWritten) {
    constexpr size_t room = 32;
    for (const uint8_t canary : {0xCC, 0x33}) {
        Bytes answer(room, canary);
        Bytes expected = GetParam().answer;
        expected.resize(room, canary);

        EXPECT_EQ(VwGetInfo(answer.data(), GetParam().request), GetParam().answer.empty() ? 0 : 1);

        EXPECT_EQ(answer, expected);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Requests, FilterInfoTest, testing::Values(
    InfoCase{0,     {}},
    InfoCase{1,     hex("38 00")},       // 56
    InfoCase{2,     hex("50 00")},       // 80
    InfoCase{3,     hex("01 00")},
    InfoCase{4,     hex("90 01")},       // 400
    InfoCase{5,     hex("B8 01")},       // 440
    InfoCase{6,     hex("01 00")},
    InfoCase{7,     hex("65 05")},       // 1381
    InfoCase{8,     bytesOf(std::string_view("Dec 24 2025\0", 12))},
    InfoCase{9,     bytesOf(std::string_view("04:45:48\0", 9))},
    InfoCase{10,    hex("38 00")},       // 56
    InfoCase{11,    hex("00 00")},
    InfoCase{12,    hex("78 56 34 12")},
    InfoCase{13,    hex("00 00 00 00")},
    InfoCase{14,    {}},
    InfoCase{15,    {}},
    InfoCase{65535, {}}),
    testing::PrintToStringParamName());
// clang-format on

TEST(FilterIdentityTest, OverlayIdIsThisRecord) {
    Bytes expected = hex("65 05 05") + bytesOf("Outlook 2011 for Mac");
    expected.resize(36, 0);
    Bytes actual(sizeof OLMOverlayId, 0xCC);
    std::memcpy(actual.data(), &OLMOverlayId, sizeof OLMOverlayId);

    EXPECT_EQ(actual, expected);
}

TEST(FilterIdentityTest, VersionIsTheProjectsVersion) {
    EXPECT_THAT(version, testing::MatchesRegex("QOR_VER=[0-9]+\\.[0-9]+\\.[0-9]+"));
}

} // namespace
