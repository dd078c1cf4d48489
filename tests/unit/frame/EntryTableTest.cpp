#include <array>

#include <gmock/gmock.h>

#include "filter/olmfilter.h"

namespace {

void untouched() {}

template <typename Function> SoRoutine routine(Function* function) {
    return reinterpret_cast<SoRoutine>(function);
}

using Table = std::array<SoRoutine, VwTableEntries>;

Table tableOf(uint16_t count) {
    Table table;
    table.fill(untouched);
    VwGetRtns(table.data(), count);
    return table;
}

// Returns the contents of a table of 1 to 18 entries.
Table smallTable() {
    Table table;
    table.fill(untouched);
    const SoRoutine first[] = {routine(VwStreamOpen),
                               routine(VwStreamSection),
                               routine(VwStreamRead),
                               routine(VwStreamTell),
                               routine(VwStreamSeek),
                               routine(VwGetInfo),
                               routine(VwGetData),
                               routine(VwSetData),
                               routine(VwLocalUp),
                               routine(VwLocalDown),
                               routine(VwAllocProc),
                               routine(VwFreeProc),
                               routine(VwSetUser),
                               routine(VwSetSoRtn),
                               routine(VwStreamClose),
                               nullptr,
                               nullptr,
                               routine(VwStreamReadRecord)};
    std::copy(std::begin(first), std::end(first), table.begin());
    table[34] = table[35] = nullptr;
    return table;
}

TEST(EntryTableTest, CountOf0ClearsOnlyTheLastTwoEntries) {
    Table expected;
    expected.fill(untouched);
    expected[34] = expected[35] = nullptr;

    EXPECT_EQ(tableOf(0), expected);
}

class EntryTableCountTest : public testing::TestWithParam<uint16_t> {};

TEST_P(EntryTableCountTest, HoldsTheEntriesOfItsCount) {
    const uint16_t count = GetParam();
    Table expected = smallTable();
    if (count >= 19) {
        expected[18] = routine(VwDoSpecial);
    }
    if (count >= 23) {
        std::fill(expected.begin() + 19, expected.begin() + 23, nullptr);
    }
    if (count >= 30) {
        std::fill(expected.begin() + 23, expected.end(), nullptr);
    }

    EXPECT_EQ(tableOf(count), expected);
}

INSTANTIATE_TEST_SUITE_P(Counts, EntryTableCountTest,
                         testing::Values(1, 17, 18, 19, 22, 23, 29, 30, 35, 36, 65535),
                         testing::PrintToStringParamName());

TEST(EntryTableTest, IdleEntryPointsDoNothing) {
    EXPECT_EQ(VwStreamTell(), 0);
    EXPECT_EQ(VwStreamSeek(), 0);
    EXPECT_EQ(SODummy(), 0U);
    VwStreamReadRecord();
    VwGetSectionDataFunc();
    VwSetSectionDataFunc();
}

} // namespace
