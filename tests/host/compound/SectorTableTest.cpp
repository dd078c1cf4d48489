#include "host/compound/SectorTable.h"

#include <gtest/gtest.h>

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost {

using test::numberAt;

TEST(SectorTableTest, NewSectorIsFollowedByTheNextNumber) {
    SectorTable table;

    EXPECT_EQ(table.add(), 0U);
    EXPECT_EQ(table.add(), 1U);

    EXPECT_EQ(table.next(0), 1U);
    EXPECT_EQ(table.next(1), 2U);
}

TEST(SectorTableTest, OneFollowerIsSetAndTheOthersStay) {
    SectorTable table;
    for (int i = 0; i < 300; ++i) {
        table.add();
    }

    table.set(200, endOfChain);

    EXPECT_EQ(table.next(199), 200U);
    EXPECT_EQ(table.next(200), endOfChain);
    EXPECT_EQ(table.next(201), 202U);
    EXPECT_EQ(table.next(0), 1U);
    EXPECT_EQ(table.next(299), 300U);
}

TEST(SectorTableTest, EncodesLowByteFirstAndFreeAfterTheLast) {
    SectorTable table;
    for (int i = 0; i < 130; ++i) {
        table.add();
    }
    table.set(129, endOfChain);

    ASSERT_EQ(table.tableSectorCount(), 2U);
    const auto first = table.encoded(0);
    const auto second = table.encoded(1);

    for (std::size_t i = 0; i < 128; ++i) {
        EXPECT_EQ(numberAt(first, 4 * i), i + 1);
    }
    EXPECT_EQ(numberAt(second, 0), 129U);
    EXPECT_EQ(numberAt(second, 4), endOfChain);
    for (std::size_t i = 2; i < 128; ++i) {
        EXPECT_EQ(numberAt(second, 4 * i), freeSector);
    }
}

TEST(SectorTableTest, FreesAWholeChainAndNothingElse) {
    SectorTable table;
    for (int i = 0; i < 6; ++i) {
        table.add();
    }
    table.set(0, 2); // 0, 2, 4 and 1, 3, 5
    table.set(2, 4);
    table.set(4, endOfChain);
    table.set(1, 3);
    table.set(3, 5);
    table.set(5, endOfChain);

    table.freeChain(0);

    for (const SectorNumber sector : {0U, 2U, 4U}) {
        EXPECT_EQ(table.next(sector), freeSector);
    }
    EXPECT_EQ(table.next(1), 3U);
    EXPECT_EQ(table.next(3), 5U);
    EXPECT_EQ(table.next(5), endOfChain);
}

} // namespace olmhost
