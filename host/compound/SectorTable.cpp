#include "host/compound/SectorTable.h"

#include <cassert>

#include "host/compound/FieldWriter.h"

namespace olmhost {

SectorNumber SectorTable::add() {
    if (count % numbersPerSector == 0) {
        pages.push_back(nullptr);
    }
    return static_cast<SectorNumber>(count++);
}

SectorNumber SectorTable::next(SectorNumber sector) const {
    assert(sector < count);
    const auto& page = pages[sector / numbersPerSector];
    return page ? (*page)[sector % numbersPerSector] : sector + 1;
}

void SectorTable::set(SectorNumber sector, SectorNumber follower) {
    assert(sector < count);
    auto& page = pages[sector / numbersPerSector];
    if (!page) {
        if (follower == sector + 1) {
            return;
        }
        page = std::make_unique<Page>();
        const auto first = static_cast<SectorNumber>(sector - sector % numbersPerSector);
        for (std::size_t i = 0; i < page->size(); ++i) {
            (*page)[i] = static_cast<SectorNumber>(first + i + 1);
        }
    }
    (*page)[sector % numbersPerSector] = follower;
}

void SectorTable::freeChain(SectorNumber first) {
    SectorNumber sector = first;
    while (sector != endOfChain) {
        const SectorNumber follower = next(sector);
        set(sector, freeSector);
        sector = follower;
    }
}

std::array<std::byte, sectorSize> SectorTable::encoded(std::uint32_t tableSectorIndex) const {
    std::array<std::byte, sectorSize> place;
    FieldWriter fields(place);
    const std::uint64_t first = std::uint64_t{tableSectorIndex} * numbersPerSector;
    for (std::uint64_t sector = first; sector < first + numbersPerSector; ++sector) {
        fields.number(sector < count ? next(static_cast<SectorNumber>(sector)) : freeSector);
    }
    return place;
}

} // namespace olmhost
