#include <iterator>

#include <gtest/gtest.h>

#include "filter/storage/MapiNamedPropMap.h"
#include "tests/fakehost/Bytes.h"

using namespace fakehost;

namespace {

struct NumericRows {
    MapiGUIDIndex set;
    std::vector<uint32_t> propTags;
};

// The numeric names, grouped by set, in the order of the table.
// clang-format off
const NumericRows numericRows[] = {
    {SetCommon, {0x85020040, 0x85010003, 0x8503000B}},
    {SetAddress, {0x8062001F, 0x8045001F, 0x8047001F, 0x8046001F, 0x8048001F, 0x80DB001F,
                  0x801B001F, 0x801A001F, 0x8083001F, 0x8093001F, 0x80A3001F, 0x804F001F,
                  0x8050001F, 0x8051001F, 0x8052001F, 0x8053001F, 0x80541102, 0x80551102}},
    {SetTask, {0x81040040, 0x81050040, 0x810F0040, 0x811C000B, 0x81010003, 0x81020005,
               0x81160102}},
    {SetNote, {0x8B000003, 0x8B030003, 0x8B020003, 0x8B040003, 0x8B050003}},
    {SetAppointment, {0x8208001F, 0x820D0040, 0x820E0040, 0x82050003, 0x8215000B, 0x82160102,
                      0x8234001F}},
};
// clang-format on

const MapiNamedProp& keywordsRow() {
    return MapiNamedPropMap::supportedProps[40];
}

} // namespace

TEST(SupportedPropsTest, NumericNamesAreGroupedBySet) {
    int row = 0;
    for (const NumericRows& rows : numericRows) {
        for (const uint32_t propTag : rows.propTags) {
            SCOPED_TRACE(testing::Message() << "row " << row);
            const MapiNamedProp& prop = MapiNamedPropMap::supportedProps[row++];
            EXPECT_EQ(prop.propTag, propTag);
            EXPECT_EQ(prop.guidSet, rows.set);
            EXPECT_EQ(prop.name.length(), 0);
            EXPECT_EQ(prop.nameCrc, 0u);
            EXPECT_FALSE(prop.isStringName);
        }
    }
    EXPECT_EQ(row, 40);
}

TEST(SupportedPropsTest, TableEndsWithItsOneStringName) {
    EXPECT_EQ(std::size(MapiNamedPropMap::supportedProps), 41u);
    EXPECT_TRUE(keywordsRow().isStringName);
    EXPECT_TRUE(keywordsRow().name == qor::WString("Keywords"));
    EXPECT_EQ(keywordsRow().nameCrc, 0x2EDA4D3Bu);
    EXPECT_EQ(keywordsRow().guidSet, SetPublicStrings);
}

TEST(SupportedPropsTest, StringNameIsKeyedByItsHash) {
    const auto hash = static_cast<uint32_t>(qor::WString("Keywords").hashCode());

    EXPECT_EQ(keywordsRow().propTag, hash);
    EXPECT_NE(keywordsRow().propTag, 0u);
    EXPECT_LE(keywordsRow().propTag, 0x7FFFFFFFu);
}

TEST(SupportedPropsTest, EveryNumericNameCanBeMapped) {
    MapiNamedPropMap map;
    uint32_t number = 0;
    for (const NumericRows& rows : numericRows) {
        for (const uint32_t propTag : rows.propTags) {
            EXPECT_EQ(map.mapNamedProp(propTag), 0x80000000 | number << 16 | (propTag & 0xFFFF));
            ++number;
        }
    }
}
