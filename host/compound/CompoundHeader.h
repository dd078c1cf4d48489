#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDHEADER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDHEADER_H

#include <array>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// The first 512 bytes of a compound file (MS-CFB 2.2).
struct CompoundHeader {
    SectorNumber firstDirectorySector = endOfChain;
    SectorNumber firstMiniTableSector = endOfChain;
    std::uint32_t miniTableSectors = 0;
    SectorNumber firstIndexSector = endOfChain; // of the DIFAT after the header's own part
    std::uint32_t indexSectors = 0;
    std::uint32_t tableSectors = 0; // of the FAT

    // Sector `n` of the FAT is at headerIndex[n].
    std::array<SectorNumber, tableSectorsInHeader> headerIndex = unusedIndex();

    // Returns the bytes in the file.
    std::array<std::byte, sectorSize> encoded() const;

private:
    static constexpr std::array<SectorNumber, tableSectorsInHeader> unusedIndex() {
        std::array<SectorNumber, tableSectorsInHeader> index{};
        index.fill(freeSector);
        return index;
    }
};

} // namespace olmhost

#endif
