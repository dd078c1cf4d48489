#ifndef OLMKIT_HOST_COMPOUND_SECTORTABLE_H
#define OLMKIT_HOST_COMPOUND_SECTORTABLE_H

#include <array>
#include <memory>
#include <vector>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// Which sector follows which: the FAT, and likewise the MiniFAT.
//
// A new sector is followed by the next number, since that is what a stream that is written alone
// comes to. The table is held in pages of one table sector each, and a page in which every sector
// is followed by the next number takes no memory but its pointer: 1 GB in one stream costs 128 KB
// here, in place of 8 MB.
class SectorTable {
public:
    // The next number, followed by the one behind it until set() says otherwise.
    SectorNumber add();

    // Sectors so far.
    std::uint64_t size() const { return count; }

    // What follows `sector`, which was added: a number or one of the marks.
    SectorNumber next(SectorNumber sector) const;
    void set(SectorNumber sector, SectorNumber follower);

    // Marks a chain that has its end as free.
    void freeChain(SectorNumber first);

    // Table sectors that it takes, and the bytes of one of them; free where no sector is.
    std::uint32_t tableSectorCount() const { return static_cast<std::uint32_t>(pages.size()); }
    std::array<std::byte, sectorSize> encoded(std::uint32_t tableSectorIndex) const;

private:
    using Page = std::array<SectorNumber, numbersPerSector>;

    std::vector<std::unique_ptr<Page>> pages; // null: each is followed by the next number
    std::uint64_t count = 0;
};

} // namespace olmhost

#endif
