#include "host/check/AllocationTable.h"

#include <algorithm>

#include "host/compound/FieldReader.h"

namespace olmhost {

void AllocationTable::load(std::vector<SectorNumber> sectors, std::uint64_t wanted) {
    tableSectors = std::move(sectors);
    owned.assign(std::min(wanted, placeCount()), false);
}

SectorNumber AllocationTable::at(std::uint64_t place) const {
    const SectorNumber sector = tableSectors[place / numbersPerTableSector()];
    if (sector == endOfChain) {
        return freeSector;
    }
    const std::uint64_t offset = place % numbersPerTableSector() * sizeof(SectorNumber);
    return FieldReader(file.bytes(layout.offsetOf(sector) + offset, sizeof(SectorNumber)))
        .number<SectorNumber>();
}

bool AllocationTable::claim(SectorNumber sector) {
    if (owned[sector]) {
        return false;
    }
    owned[sector] = true;
    return true;
}

ChainWalk AllocationTable::walk(SectorNumber first, std::vector<SectorNumber>* kept) {
    ChainWalk walk;
    SectorNumber number = first;
    while (number != endOfChain) {
        if (number == freeSector && walk.length > 0) {
            walk.end = ChainWalk::End::Free;
            return walk;
        }
        if (number >= count()) {
            return {ChainWalk::End::OutOfFile, walk.length, number};
        }
        if (!claim(number)) {
            return {ChainWalk::End::Shared, walk.length, number};
        }
        if (kept != nullptr) {
            kept->push_back(number);
        }
        walk.last = number;
        ++walk.length;
        number = at(number);
    }
    return walk;
}

void AllocationTable::report(const ChainWalk& walk, const std::string& place,
                             std::uint64_t needed) {
    reportEnd(walk, place);
    if (walk.end == ChainWalk::End::Mark && walk.length != needed) {
        findings.add(FindingCode::ChainLength, place,
                     "its chain has " + counted(walk.length, noun) + ", and its bytes take " +
                         std::to_string(needed));
    }
}

void AllocationTable::reportEnd(const ChainWalk& walk, const std::string& place) {
    const std::string sector = std::string(noun) + " " + numberText(walk.last);
    switch (walk.end) {
    case ChainWalk::End::Mark:
        break;
    case ChainWalk::End::OutOfFile:
        findings.add(FindingCode::ChainOutOfFile, place,
                     "its chain leads to " + sector + ", which does not exist");
        break;
    case ChainWalk::End::Shared:
        findings.add(FindingCode::ChainShared, place,
                     "its chain leads to " + sector + ", which is in use already");
        break;
    case ChainWalk::End::Free:
        findings.add(FindingCode::ChainIntoFree, place,
                     "its chain leads to " + sector + ", which is marked as free");
        break;
    }
}

std::uint64_t AllocationTable::reportOrphans() {
    std::uint64_t orphans = 0;
    std::uint64_t free = 0;
    std::uint64_t first = 0;
    for (std::uint64_t sector = 0; sector < count(); ++sector) {
        if (owned[sector]) {
            continue;
        }
        if (at(sector) == freeSector) {
            ++free;
        } else if (orphans++ == 0) {
            first = sector;
        }
    }
    if (orphans > 0) {
        findings.add(FindingCode::SectorOrphan, std::string(noun) + " " + std::to_string(first),
                     "from here on " + counted(orphans, noun) + (orphans == 1 ? " is" : " are") +
                         " not marked as free and belong" + (orphans == 1 ? "s" : "") +
                         " to nothing");
    }
    return free;
}

} // namespace olmhost
