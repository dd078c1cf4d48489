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
using ClassId = std::array<std::byte, 16>; // in the file's byte order

// Sizes, in bytes.
inline constexpr std::size_t sectorSize = 512; // the header's too
inline constexpr std::size_t miniSectorSize = 64;
inline constexpr std::size_t miniStreamLimit = 4096; // a shorter stream is in mini sectors
inline constexpr std::size_t directoryEntrySize = 128;
inline constexpr std::uint64_t largestStream = 0xFFFFFFFF; // the sizes of version 3 have 32 bits

// Counts.
inline constexpr std::size_t numbersPerSector = sectorSize / sizeof(SectorNumber);
inline constexpr std::size_t entriesPerSector = sectorSize / directoryEntrySize;
inline constexpr std::size_t tableSectorsInHeader = 109;
inline constexpr std::size_t tableSectorsPerIndexSector = numbersPerSector - 1;
inline constexpr std::size_t longestName = 31; // UTF-16 units, without the terminator

// Special values in place of a sector's number (MS-CFB 2.1).
inline constexpr SectorNumber largestSectorNumber = 0xFFFFFFFA;
inline constexpr SectorNumber indexSector = 0xFFFFFFFC; // part of the DIFAT
inline constexpr SectorNumber tableSector = 0xFFFFFFFD; // part of the FAT
inline constexpr SectorNumber endOfChain = 0xFFFFFFFE;
inline constexpr SectorNumber freeSector = 0xFFFFFFFF;

// Special values of an entry's number (MS-CFB 2.6.1).
inline constexpr EntryId noEntry = 0xFFFFFFFF;
inline constexpr EntryId rootEntry = 0;

// The header has two of the sizes as exponents of 2.
inline constexpr unsigned int sectorShift = 9;
inline constexpr unsigned int miniSectorShift = 6;

// Fields of the header with fixed values (MS-CFB 2.2).
inline constexpr std::uint64_t headerSignature = 0xE11AB1A1E011CFD0;
inline constexpr std::uint16_t headerMinorVersion = 0x003E;
inline constexpr std::uint16_t headerMajorVersion = 3;
inline constexpr std::uint16_t headerByteOrder = 0xFFFE; // low byte first
inline constexpr std::size_t headerReservedSize = 6;     // bytes
static_assert(sectorSize == 1U << sectorShift && miniSectorSize == 1U << miniSectorShift);

} // namespace olmhost

#endif
