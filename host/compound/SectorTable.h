#ifndef OLMKIT_HOST_COMPOUND_SECTORTABLE_H
#define OLMKIT_HOST_COMPOUND_SECTORTABLE_H

#include <array>
#include <memory>
#include <vector>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// Which sector follows which: the FAT or the mini FAT (MS-CFB 2.3 and 2.4).
//
// A new sector is followed by the next number, as in a stream that is written alone. The table is
// held in pages of one table sector each, and a page in which every sector is followed by the next
// number takes only the memory of its pointer: 1 GB in one stream costs 128 KB, instead of 8 MB.
class SectorTable {
public:
    // Adds a sector, followed by the next number until set() changes that. Returns its number.
    SectorNumber add();

    // Returns the number of sectors.
    std::uint64_t size() const { return count; }

    // Returns what follows `sector`, which was added: a number or a special value.
    SectorNumber next(SectorNumber sector) const;
    void set(SectorNumber sector, SectorNumber follower);

    // Marks a chain, which has ended, as free.
    void freeChain(SectorNumber first);

    // Returns the number of table sectors, and the bytes of one; padded with freeSector.
    std::uint32_t tableSectorCount() const { return static_cast<std::uint32_t>(pages.size()); }
    std::array<std::byte, sectorSize> encoded(std::uint32_t tableSectorIndex) const;

private:
    using Page = std::array<SectorNumber, numbersPerSector>;

    std::vector<std::unique_ptr<Page>> pages; // null: each is followed by the next number
    std::uint64_t count = 0;
};

} // namespace olmhost

#endif
