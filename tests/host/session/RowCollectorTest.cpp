#include "host/session/RowCollector.h"

#include <array>

#include <gtest/gtest.h>

#include "filter/boundary/Request.h"

namespace olmhost {
namespace {

// The numbers that matter: a text's type 25; what a value column's format ends in.
void defineUsualColumns(RowCollector& rows) {
    for (int column = 0; column < 11; ++column) {
        rows.columnType({25, 0x13689, 5});
        rows.columnFormat({0, 0, 0x1000B});
        rows.columnDone({79, 2, 0, 0});
    }
    for (const std::uint32_t which : {6U, 7U}) {
        rows.columnType({0, 0xFFFFFFFF, 0});
        rows.columnFormat({0, which << 26, 1});
        rows.columnDone({79, 2, 0, 0});
    }
    rows.columnType({0, 19, 0});
    rows.columnFormat({0, 0, 19});
    rows.columnDone({79, 2, 0, 0});
}

TEST(RowCollectorTest, KeepsTheNumbersOfEachColumn) {
    RowCollector rows;

    rows.columnType({1, 2, 3});
    rows.columnFormat({4, 5, 6});
    rows.columnDone({7, 8, 9, 10});

    ASSERT_EQ(rows.columns().size(), 1U);
    EXPECT_EQ(rows.columns()[0], (Column{{1, 2, 3}, {4, 5, 6}, {7, 8, 9, 10}}));
    EXPECT_FALSE(rows.isUsual());
}

TEST(RowCollectorTest, KnowsTheUsualColumns) {
    RowCollector rows;
    EXPECT_FALSE(rows.isUsual());

    defineUsualColumns(rows);
    EXPECT_TRUE(rows.isUsual());

    rows.columnDone({79, 2, 0, 0});
    EXPECT_FALSE(rows.isUsual()) << "one too many";
}

TEST(RowCollectorTest, BuildsACellFromItsPieces) {
    RowCollector rows;

    rows.putText(u"name");
    rows.endCell();
    rows.beginTag(0, 0x1367C);
    rows.putText(u"a");
    rows.putCharacter(u';');
    rows.putText(u"b");
    rows.endCell();
    rows.endCell();
    const Row& row = rows.finish();

    EXPECT_EQ(row.texts[0].text, u"name");
    EXPECT_EQ(row.texts[0].tagId, Cell::noTag);
    EXPECT_EQ(row.texts[0].tagIndex, Cell::noTag);
    EXPECT_EQ(row.texts[1].text, u"a;b");
    EXPECT_EQ(row.texts[1].tagId, 0x1367CU);
    EXPECT_EQ(row.texts[1].tagIndex, 0U);
    EXPECT_EQ(row.texts[2].text, u"");
    EXPECT_EQ(row.texts[10].text, u"") << "a missing cell";
}

TEST(RowCollectorTest, TakesTheValuesOfTheLastThreeColumns) {
    RowCollector rows;
    const std::uint32_t special6 = 0x30000;
    const std::uint32_t special7 = 4;
    const ItemLocator locator = {16, 12, 3};

    for (int column = 0; column < 11; ++column) {
        rows.endCell();
    }
    rows.putValue(&special6);
    rows.endCell();
    rows.putValue(&special7);
    rows.endCell();
    rows.putValue(&locator);
    const Row& row = rows.finish();

    EXPECT_EQ(row.specials, (std::array<std::uint32_t, 2>{0x30000, 4}));
    EXPECT_EQ(row.locatorSize, 16U);
    EXPECT_EQ(row.entry, 12U);
    EXPECT_EQ(row.item, 3U);
}

TEST(RowCollectorTest, ClearDropsTheRowSoFar) {
    RowCollector rows;
    rows.beginTag(5, 6);
    rows.putText(u"old");
    rows.endCell();
    rows.putText(u"half");

    rows.clear();
    rows.putText(u"new");
    rows.endCell();
    const Row& row = rows.finish();

    EXPECT_EQ(row.texts[0].text, u"new");
    EXPECT_EQ(row.texts[0].tagId, Cell::noTag);
    EXPECT_EQ(row.texts[1].text, u"");
}

TEST(RowCollectorTest, CellsAfterTheLastColumnAreIgnored) {
    RowCollector rows;
    for (int column = 0; column < 20; ++column) {
        rows.beginTag(0, 1);
        rows.putText(u"x");
        rows.endCell();
    }
    const std::uint32_t value = 1;
    rows.putValue(&value);

    const Row& row = rows.finish();

    EXPECT_EQ(row.texts[10].text, u"x");
    EXPECT_EQ(row.specials, (std::array<std::uint32_t, 2>{0, 0}));
}

} // namespace
} // namespace olmhost
