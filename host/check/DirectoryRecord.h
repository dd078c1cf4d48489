#ifndef OLMKIT_HOST_CHECK_DIRECTORYRECORD_H
#define OLMKIT_HOST_CHECK_DIRECTORYRECORD_H

#include <array>
#include <string_view>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// The fields of a directory entry as they are in the file, whatever they hold (MS-CFB 2.6.1).
struct DirectoryRecord {
    // `record` has directoryEntrySize bytes.
    explicit DirectoryRecord(ByteSpan record);

    std::array<char16_t, longestName + 1> units{};
    std::uint16_t nameSize = 0; // bytes, with the terminator
    std::uint8_t type = 0;
    std::uint8_t colour = 0;
    EntryId left = noEntry;
    EntryId right = noEntry;
    EntryId child = noEntry;
    ClassId classId{};
    std::uint32_t state = 0;
    std::uint64_t created = 0;
    std::uint64_t modified = 0;
    SectorNumber firstSector = 0;
    std::uint64_t size = 0; // bytes

    // The name by its length, as far as there is room for it.
    std::u16string_view name() const;

    bool isStorage() const; // the root, too
    bool isStream() const;
    bool isBlack() const;
};

} // namespace olmhost

#endif
