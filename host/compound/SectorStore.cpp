#include "host/compound/SectorStore.h"

#include <algorithm>
#include <cassert>
#include <vector>

#include "host/compound/FieldWriter.h"

namespace olmhost {

namespace {

std::uint64_t dividedUp(std::uint64_t value, std::uint64_t divisor) {
    return (value + divisor - 1) / divisor;
}

// Returns the number of DIFAT sectors for that many sectors of the FAT.
std::uint64_t indexSectorsFor(std::uint64_t tableSectors) {
    if (tableSectors <= tableSectorsInHeader) {
        return 0;
    }
    return dividedUp(tableSectors - tableSectorsInHeader, tableSectorsPerIndexSector);
}

// Returns DIFAT sector `index` of `count` (MS-CFB 2.5): its share of the FAT's sectors, which are
// consecutive from `firstTable` to `firstIndex`, where the DIFAT sectors begin.
std::array<std::byte, sectorSize> encodedIndexSector(std::uint64_t index, std::uint64_t count,
                                                     SectorNumber firstTable,
                                                     SectorNumber firstIndex) {
    std::array<std::byte, sectorSize> place;
    FieldWriter fields(place);
    std::uint64_t sector = firstTable + tableSectorsInHeader + index * tableSectorsPerIndexSector;
    for (std::size_t i = 0; i < tableSectorsPerIndexSector; ++i, ++sector) {
        fields.number(sector < firstIndex ? static_cast<SectorNumber>(sector) : freeSector);
    }
    const bool isLast = index + 1 == count;
    fields.number(isLast ? endOfChain : static_cast<SectorNumber>(firstIndex + index + 1));
    return place;
}

} // namespace

SectorStore::SectorStore(ByteSink& target) : output(target) {
    const std::array<std::byte, sectorSize> blankHeader{};
    output.append(blankHeader);
}

SectorNumber SectorStore::append(SectorNumber last, ByteSpan sectors, SectorNumber& first) {
    assert(!sectors.empty() && sectors.size() % sectorSize == 0);
    const std::uint64_t count = sectors.size() / sectorSize;
    if (table.size() + count > largestSectorNumber) {
        output.fail();
    }
    first = table.add();
    if (last != endOfChain) {
        table.set(last, first);
    }
    SectorNumber newLast = first;
    for (std::uint64_t i = 1; i < count; ++i) {
        newLast = table.add();
    }
    output.append(sectors);
    return newLast;
}

void SectorStore::finish(CompoundHeader header) {
    addTableSectors(header);
    output.flush();
    output.overwriteStart(header.encoded());
}

void SectorStore::addTableSectors(CompoundHeader& header) {
    // The table covers its own sectors too, so its size is found by trying larger ones.
    const std::uint64_t dataSectors = table.size();
    std::uint64_t tableSectors = 0;
    std::uint64_t total = dataSectors;
    while (tableSectors * numbersPerSector < total) {
        tableSectors = dividedUp(total, numbersPerSector);
        total = dataSectors + tableSectors + indexSectorsFor(tableSectors);
    }
    const std::uint64_t indexSectors = indexSectorsFor(tableSectors);
    if (total > largestSectorNumber) {
        output.fail();
        return;
    }
    const auto firstTable = static_cast<SectorNumber>(dataSectors);
    const auto firstIndex = static_cast<SectorNumber>(dataSectors + tableSectors);

    for (std::uint64_t i = 0; i < tableSectors; ++i) {
        table.set(table.add(), tableSector);
    }
    for (std::uint64_t i = 0; i < indexSectors; ++i) {
        table.set(table.add(), indexSector);
    }
    assert(table.tableSectorCount() == tableSectors);

    for (std::uint32_t i = 0; i < tableSectors; ++i) {
        output.append(table.encoded(i));
    }
    for (std::uint64_t i = 0; i < indexSectors; ++i) {
        output.append(encodedIndexSector(i, indexSectors, firstTable, firstIndex));
    }

    header.tableSectors = static_cast<std::uint32_t>(tableSectors);
    for (std::size_t i = 0; i < std::min<std::uint64_t>(tableSectors, tableSectorsInHeader); ++i) {
        header.headerIndex[i] = static_cast<SectorNumber>(firstTable + i);
    }
    header.indexSectors = static_cast<std::uint32_t>(indexSectors);
    header.firstIndexSector = indexSectors == 0 ? endOfChain : firstIndex;
}

} // namespace olmhost
