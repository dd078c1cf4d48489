#include "host/markup/TagMaps.h"

#include <deque>
#include <string>

#include <gtest/gtest.h>

#include "host/markup/NameHash.h"

namespace {

using olmhost::nameHash;
using olmhost::TagMaps;

std::uint32_t idOf(const TagMaps& maps, std::string_view name) {
    return maps.find(name, nameHash(name));
}

TEST(TagMapsTest, AnEmptyMapHasNoName) {
    TagMaps maps;
    EXPECT_EQ(idOf(maps, "a"), UTXML_UNKNOWN_TAG);
    EXPECT_EQ(idOf(maps, ""), UTXML_UNKNOWN_TAG);
}

TEST(TagMapsTest, ThousandsOfNamesAreDistinguished) {
    std::deque<std::string> names;
    TagMaps maps;
    for (std::uint64_t i = 0; i < 5000; ++i) {
        names.push_back("name" + std::to_string(i));
        const UTXML_STRVALPAIR row[] = {{i, names.back().c_str()}};
        ASSERT_TRUE(maps.add(row));
    }
    for (std::uint32_t i = 0; i < 5000; ++i) {
        EXPECT_EQ(idOf(maps, names[i]), i);
    }
    EXPECT_EQ(idOf(maps, "name5000"), UTXML_UNKNOWN_TAG);
    EXPECT_EQ(idOf(maps, "name"), UTXML_UNKNOWN_TAG);
}

TEST(TagMapsTest, NamesOfOneHashAreDistinguished) {
    const UTXML_STRVALPAIR rows[] = {{1, "one"}, {2, "two"}};
    TagMaps maps;
    maps.add(rows);
    EXPECT_EQ(maps.find("six", nameHash("one")), UTXML_UNKNOWN_TAG);
}

TEST(TagMapsTest, ClearedMapsAreEmptyAndTakeTheSameRowsAgain) {
    const UTXML_STRVALPAIR rows[] = {{1, "one"}};
    TagMaps maps;
    maps.add(rows);
    maps.clear();
    EXPECT_EQ(idOf(maps, "one"), UTXML_UNKNOWN_TAG);
    maps.add(rows);
    EXPECT_EQ(idOf(maps, "one"), 1U);
}

TEST(TagMapsTest, ARefusedMapAddsNothing) {
    const UTXML_STRVALPAIR rows[] = {{1, "one"}, {2, nullptr}};
    TagMaps maps;
    EXPECT_FALSE(maps.add(rows));
    EXPECT_EQ(idOf(maps, "one"), UTXML_UNKNOWN_TAG);
}

} // namespace
