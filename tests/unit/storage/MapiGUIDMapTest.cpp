#include "filter/storage/MapiGUIDMap.h"

#include <gtest/gtest.h>

#include "tests/fakehost/Bytes.h"
#include "tests/unit/RowName.h"
#include "tests/unit/storage/Thrown.h"

using namespace fakehost;

namespace {

struct SetCase {
    const char* name;
    int set;
    const char* guid; // its bytes in a stream
};

class MapiGUIDMapTest : public testing::TestWithParam<SetCase> {};

Bytes bytesOfGuid(const MapiGUID& guid) {
    const Bytes last(std::begin(guid.last), std::end(guid.last));
    return le32(static_cast<uint32_t>(guid.first)) + le16(guid.second) + le16(guid.third) + last;
}

} // namespace

TEST_P(MapiGUIDMapTest, SetHasItsGuid) {
    const MapiGUID* guid = MapiGUIDMap::getMaipGuid(static_cast<MapiGUIDIndex>(GetParam().set));

    ASSERT_NE(guid, nullptr);
    EXPECT_EQ(bytesOfGuid(*guid), hex(GetParam().guid));
    EXPECT_EQ(guid->first >> 32, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Sets, MapiGUIDMapTest,
    testing::Values(SetCase{"Common", 0, "08 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                    SetCase{"Address", 1, "04 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                    SetCase{"Appointment", 2, "02 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                    SetCase{"Meeting", 3, "90 DA D8 6E 0B 45 1B 10 98 DA 00 AA 00 3F 13 05"},
                    SetCase{"Task", 4, "03 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                    SetCase{"Note", 5, "0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                    SetCase{"PublicStrings", 6, "29 03 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"}),
    rowName);

TEST(MapiGUIDMapBoundsTest, SetPastTheLastThrows) {
    const auto code = thrownCode([] { MapiGUIDMap::getMaipGuid(static_cast<MapiGUIDIndex>(7)); });

    EXPECT_EQ(code, unknownCode);
}

TEST(MapiGUIDMapBoundsTest, FirstPartOfAGuidIsANumber) {
    EXPECT_EQ(MapiGUIDMap::getMaipGuid(SetMeeting)->first, 0x6ED8DA90u);
}
