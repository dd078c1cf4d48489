#include "host/compound/DirectoryEntry.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace olmhost {

namespace {

// The bytes other than zero, by their offset; all others must be zero.
std::vector<unsigned int> laidOut(const std::vector<std::pair<std::size_t, unsigned int>>& places) {
    std::vector<unsigned int> bytes(directoryEntrySize, 0);
    for (const auto& [place, value] : places) {
        bytes[place] = value;
    }
    return bytes;
}

std::vector<unsigned int> encoded(const DirectoryEntry& entry, const ClassId& classId = {}) {
    std::vector<unsigned int> bytes;
    for (const std::byte byte : entry.encoded(classId)) {
        bytes.push_back(std::to_integer<unsigned int>(byte));
    }
    return bytes;
}

} // namespace

TEST(DirectoryEntryTest, StreamHasNamePlaceAndSize) {
    DirectoryEntry entry;
    entry.setName(u"a\u0416");
    entry.type = EntryType::Stream;
    entry.isRed = true;
    entry.left = 0x01020304;
    entry.firstSector = 0x0A0B0C0D;
    entry.size = 0xF1F2F3F4;

    EXPECT_EQ(encoded(entry),
              laidOut({{0, 'a'},    {2, 0x16},   {3, 0x04},   {64, 6},     {66, 2},
                       {68, 4},     {69, 3},     {70, 2},     {71, 1},     {72, 0xFF},
                       {73, 0xFF},  {74, 0xFF},  {75, 0xFF},  {76, 0xFF},  {77, 0xFF},
                       {78, 0xFF},  {79, 0xFF},  {116, 0x0D}, {117, 0x0C}, {118, 0x0B},
                       {119, 0x0A}, {120, 0xF4}, {121, 0xF3}, {122, 0xF2}, {123, 0xF1}}));
}

TEST(DirectoryEntryTest, StorageHasChildrenAndNoBytes) {
    DirectoryEntry entry;
    entry.setName(u"s");
    entry.type = EntryType::Storage;
    entry.left = 1;
    entry.right = 2;
    entry.child = 3;

    EXPECT_EQ(encoded(entry),
              laidOut({{0, 's'}, {64, 4}, {66, 1}, {67, 1}, {68, 1}, {72, 2}, {76, 3}}));
}

TEST(DirectoryEntryTest, ClassIdIsWrittenAsGiven) {
    DirectoryEntry entry;
    entry.setName(u"R");
    entry.type = EntryType::Root;
    ClassId classId;
    std::vector<std::pair<std::size_t, unsigned int>> expected{{0, 'R'}, {64, 4}, {66, 5}, {67, 1}};
    for (std::size_t i = 0; i < classId.size(); ++i) {
        classId[i] = static_cast<std::byte>(0xA0 + i);
        expected.emplace_back(80 + i, 0xA0 + i);
    }
    for (std::size_t i = 68; i < 80; ++i) {
        expected.emplace_back(i, 0xFF);
    }
    expected.insert(expected.end(), {{116, 0xFE}, {117, 0xFF}, {118, 0xFF}, {119, 0xFF}});

    EXPECT_EQ(encoded(entry, classId), laidOut(expected));
}

TEST(DirectoryEntryTest, UnusedEntryIsBlankWhateverItHeld) {
    DirectoryEntry entry;
    entry.setName(u"left over");
    entry.left = 7;
    entry.size = 9;
    entry.firstSector = 5;
    std::vector<std::pair<std::size_t, unsigned int>> expected;
    for (std::size_t i = 68; i < 80; ++i) {
        expected.emplace_back(i, 0xFF);
    }

    EXPECT_EQ(encoded(entry), laidOut(expected));
}

TEST(DirectoryEntryTest, LongestNameKeepsItsTerminator) {
    DirectoryEntry entry;
    entry.type = EntryType::Stream;
    entry.setName(std::u16string(31, u'x'));

    const auto bytes = encoded(entry);

    EXPECT_EQ(bytes[60], 'x');
    EXPECT_EQ(bytes[62], 0U);
    EXPECT_EQ(bytes[63], 0U);
    EXPECT_EQ(bytes[64], 64U);
}

} // namespace olmhost
