#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDFORMAT_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDFORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// The numbers of the compound file format (MS-CFB), version 3.
namespace olmhost {

using SectorNumber = std::uint32_t; // of a sector or a mini sector, from 0
using EntryId = std::uint32_t;      // place of an entry in the directory, from 0
using ByteSpan = std::span<const std::byte>;
using ClassId = std::array<std::byte, 16>; // as it stands in the file

// Sizes, in bytes.
inline constexpr std::size_t sectorSize = 512; // the header's too
inline constexpr std::size_t miniSectorSize = 64;
inline constexpr std::size_t miniStreamLimit = 4096; // a shorter stream lives in mini sectors
inline constexpr std::size_t directoryEntrySize = 128;
inline constexpr std::uint64_t largestStream = 0xFFFFFFFF; // what a reader's 32 bits can say

// Counts.
inline constexpr std::size_t numbersPerSector = sectorSize / sizeof(SectorNumber);
inline constexpr std::size_t entriesPerSector = sectorSize / directoryEntrySize;
inline constexpr std::size_t tableSectorsInHeader = 109;
inline constexpr std::size_t tableSectorsPerIndexSector = numbersPerSector - 1;
inline constexpr std::size_t longestName = 31; // UTF-16 units, without the terminator

// What stands in a table, or in a field, where a sector's number could stand.
inline constexpr SectorNumber largestSectorNumber = 0xFFFFFFFA;
inline constexpr SectorNumber indexSector = 0xFFFFFFFC; // part of the DIFAT
inline constexpr SectorNumber tableSector = 0xFFFFFFFD; // part of the FAT
inline constexpr SectorNumber endOfChain = 0xFFFFFFFE;
inline constexpr SectorNumber freeSector = 0xFFFFFFFF;

// What stands where an entry's number could stand.
inline constexpr EntryId noEntry = 0xFFFFFFFF;
inline constexpr EntryId rootEntry = 0;

// Exponents of 2 that the header gives for two of the sizes.
inline constexpr unsigned int sectorShift = 9;
inline constexpr unsigned int miniSectorShift = 6;
static_assert(sectorSize == 1U << sectorShift && miniSectorSize == 1U << miniSectorShift);

} // namespace olmhost

#endif
