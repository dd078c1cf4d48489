#include "host/check/FatChecker.h"

#include <algorithm>
#include <string>

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

// The sector of a version 4 file that holds its locks; it is allocated and never used.
constexpr std::uint64_t rangeLockOffset = 0x7FFFFF00; // bytes

std::string sectorPlace(const char* noun, std::uint64_t number) {
    return std::string(noun) + " " + std::to_string(number);
}

} // namespace

void FatChecker::check() {
    readDifat();
    checkDifat();
    fat.load(fatSectors, layout.sectorCount);
    if (fat.count() < layout.sectorCount) {
        findings.add(FindingCode::FatTooShort, "FAT",
                     "it describes " + counted(fat.count(), "sector") + " of " +
                         std::to_string(layout.sectorCount));
    }
    claimAll(difatSectors, indexSector, "DIFAT sector");
    claimAll(fatSectors, tableSector, "FAT sector");
    checkMarks();
    checkRangeLock();
}

void FatChecker::readDifat() {
    for (const SectorNumber sector : layout.headerDifat) {
        take(sector);
    }
    SectorNumber sector = layout.firstDifatSector;
    while (sector != endOfChain) {
        if (sector >= layout.sectorCount || !seen.insert(sector).second) {
            findings.add(FindingCode::DifatChain, "DIFAT",
                         "its chain leads to sector " + numberText(sector) +
                             (sector < layout.sectorCount ? ", which is in use already"
                                                          : ", which does not exist"));
            return;
        }
        difatSectors.push_back(sector);
        readDifatSector(sector, sector);
    }
}

// Its last number is that of the next DIFAT sector.
void FatChecker::readDifatSector(SectorNumber sector, SectorNumber& next) {
    FieldReader numbers(file.bytes(layout.offsetOf(sector), layout.sectorSize));
    while (numbers.remaining() > sizeof(SectorNumber)) {
        take(numbers.number<SectorNumber>());
    }
    next = numbers.number<SectorNumber>();
}

// Takes what the DIFAT lists: a sector of the FAT while the header counts any more.
void FatChecker::take(SectorNumber listed) {
    if (fatSectors.size() >= std::min(layout.fatCount, layout.sectorCount)) {
        hasTail = hasTail || listed != freeSector;
        return;
    }
    const bool isInFile = listed < layout.sectorCount;
    if (isInFile && seen.insert(listed).second) {
        fatSectors.push_back(listed);
        return;
    }
    findings.add(isInFile ? FindingCode::ChainShared : FindingCode::FatSectorLost, "DIFAT",
                 "part " + std::to_string(fatSectors.size()) + " of the FAT is in sector " +
                     numberText(listed) +
                     (isInFile ? ", which is in use already" : ", which does not exist"));
    fatSectors.push_back(endOfChain);
}

void FatChecker::checkDifat() {
    if (difatSectors.size() != layout.difatCount) {
        findings.add(FindingCode::DifatCount, "header",
                     "the DIFAT has " + counted(difatSectors.size(), "sector") +
                         ", the header counts " + std::to_string(layout.difatCount));
    }
    if (fatSectors.size() < layout.fatCount) {
        findings.add(FindingCode::FatCount, "header",
                     "the header counts " + counted(layout.fatCount, "FAT sector") +
                         ", the DIFAT lists " + std::to_string(fatSectors.size()));
    }
    if (hasTail) {
        findings.add(FindingCode::DifatTail, "DIFAT",
                     "it lists more than " + counted(layout.fatCount, "FAT sector"));
    }
    const std::size_t inHeader = std::min(fatSectors.size(), layout.headerDifat.size());
    const std::size_t perSector = layout.sectorSize / sizeof(SectorNumber) - 1;
    if (difatSectors.size() * perSector >= fatSectors.size() - inHeader + perSector) {
        findings.add(FindingCode::DifatSpare, "DIFAT", "its last sector lists nothing");
    }
}

void FatChecker::claimAll(const std::vector<SectorNumber>& sectors, SectorNumber mark,
                          const char* noun) {
    for (const SectorNumber sector : sectors) {
        // A lost one, or one that a short FAT doesn't describe: either is reported already.
        if (sector >= fat.count()) {
            continue;
        }
        fat.claim(sector);
        if (fat.at(sector) != mark) {
            findings.add(FindingCode::FatSectorMark, sectorPlace(noun, sector),
                         "the FAT has " + hexText(fat.at(sector)) + " for it, not " +
                             hexText(mark));
        }
    }
}

// Sectors that are marked as parts of the tables and are not, and numbers past the file's end.
void FatChecker::checkMarks() {
    std::uint64_t stray = 0;
    std::uint64_t pastEnd = 0;
    for (std::uint64_t place = 0; place < fat.placeCount(); ++place) {
        const SectorNumber number = fat.at(place);
        const bool isTable = number == tableSector || number == indexSector;
        const bool isReserved = number > largestSectorNumber && number < indexSector;
        pastEnd += place >= layout.sectorCount && number != freeSector ? 1 : 0;
        stray +=
            isReserved || (isTable && !seen.contains(static_cast<SectorNumber>(place))) ? 1 : 0;
    }
    if (stray > 0) {
        findings.add(FindingCode::FatMarkStray, "FAT",
                     counted(stray, "sector") +
                         (stray == 1 ? " has a mark that does" : " have marks that do") +
                         " not belong there");
    }
    if (pastEnd > 0) {
        findings.add(FindingCode::FatPastEnd, "FAT",
                     "it allocates " + counted(pastEnd, "sector") + " after the end of the file");
    }
}

void FatChecker::checkRangeLock() {
    const std::uint64_t sector = rangeLockOffset / layout.sectorSize - 1;
    if (layout.version != 4 || sector >= fat.count()) {
        return;
    }
    const auto number = static_cast<SectorNumber>(sector);
    if (!fat.claim(number) || fat.at(number) != endOfChain) {
        findings.add(FindingCode::RangeLock, sectorPlace("sector", sector),
                     "it is the range lock sector and is not allocated as such");
    }
}

} // namespace olmhost
