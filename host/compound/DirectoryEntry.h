#ifndef OLMKIT_HOST_COMPOUND_DIRECTORYENTRY_H
#define OLMKIT_HOST_COMPOUND_DIRECTORYENTRY_H

#include <array>
#include <string_view>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// The types of MS-CFB 2.6.1.
enum class EntryType : std::uint8_t { Unused = 0, Storage = 1, Stream = 2, Root = 5 };

// One storage or stream in the directory. 96 bytes, since a message may have hundreds of thousands
// of them.
struct DirectoryEntry {
    std::array<char16_t, longestName> nameUnits{};
    std::uint8_t nameSize = 0; // units
    EntryType type : 7 = EntryType::Unused;
    bool isRed : 1 = false;
    EntryId left = noEntry;  // in the finished tree; until then the sibling made before this one
    EntryId right = noEntry; // in the finished tree
    EntryId child = noEntry; // top of the tree of a storage; until then the child made last
    EntryId parent = noEntry;
    EntryId nextInBucket = noEntry;
    std::uint32_t generation = 0; // raised whenever the entry becomes another storage or stream
    SectorNumber firstSector = endOfChain;
    std::uint32_t size = 0; // bytes

    std::u16string_view name() const { return {nameUnits.data(), nameSize}; }
    void setName(std::u16string_view name); // at most longestName units

    // Returns the bytes in the file. Time stamps are left out, so that the same storage always has
    // the same bytes.
    std::array<std::byte, directoryEntrySize> encoded(const ClassId& classId) const;
};

static_assert(sizeof(DirectoryEntry) == 96);

} // namespace olmhost

#endif
