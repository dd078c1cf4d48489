#include "host/check/CompoundChecker.h"

#include "host/check/DirectoryChecker.h"
#include "host/check/FatChecker.h"

namespace olmhost {

namespace {

// How many sectors the bytes of a stream take.
std::uint64_t partsIn(std::uint64_t size, std::size_t partSize) {
    return size / partSize + (size % partSize != 0 ? 1 : 0);
}

} // namespace

bool CompoundChecker::check() {
    const std::optional<CompoundLayout> header = HeaderChecker(file, findings).check();
    if (!header.has_value()) {
        return false;
    }
    layout = *header;
    found.sectors = layout.sectorCount;
    fat.emplace(file, layout, findings, "sector");
    miniFat.emplace(file, layout, findings, "mini sector");
    FatChecker(file, layout, findings, *fat).check();
    if (!loadDirectory()) {
        return false;
    }
    DirectoryChecker(layout, findings, *directory).check();
    checkMiniStream();
    checkStreams();
    checkOrphans();
    return true;
}

bool CompoundChecker::loadDirectory() {
    std::vector<SectorNumber> sectors;
    const ChainWalk walk = fat->walk(layout.firstDirectorySector, &sectors);
    fat->reportEnd(walk, "directory");
    if (layout.version == 4 && walk.length != layout.directoryCount) {
        findings.add(FindingCode::HeaderDirectoryCount, "header",
                     "the directory has " + counted(walk.length, "sector") +
                         ", the header counts " + std::to_string(layout.directoryCount));
    }
    if (sectors.empty()) {
        findings.add(FindingCode::DirectoryMissing, "directory", "there is no directory");
        return false;
    }
    directory.emplace(file, layout);
    directory->load(std::move(sectors));
    return true;
}

// The mini stream (MS-CFB 2.6.2) and the mini FAT (2.4).
void CompoundChecker::checkMiniStream() {
    const DirectoryRecord root = directory->record(rootEntry);
    const std::uint64_t size = streamSize(root);
    if (size % miniSectorSize != 0) {
        findings.add(FindingCode::MiniStreamSize, "mini stream",
                     "it has " + counted(size, "byte") + ", so its last mini sector is cut");
    }
    const ChainWalk walk = fat->walk(root.firstSector, &miniStream);
    fat->report(walk, "mini stream", partsIn(size, layout.sectorSize));
    const std::uint64_t held = walk.length * layout.sectorSize;
    checkMiniFat(std::min(size, held) / miniSectorSize);
}

void CompoundChecker::checkMiniFat(std::uint64_t miniSectors) {
    std::vector<SectorNumber> sectors;
    const ChainWalk walk = fat->walk(layout.firstMiniFatSector, &sectors);
    fat->reportEnd(walk, "mini FAT");
    if (walk.length != layout.miniFatCount) {
        findings.add(FindingCode::MiniFatCount, "header",
                     "the mini FAT has " + counted(walk.length, "sector") + ", the header counts " +
                         std::to_string(layout.miniFatCount));
    }
    miniFat->load(std::move(sectors), miniSectors);
    if (miniFat->count() < miniSectors) {
        findings.add(FindingCode::MiniFatTooShort, "mini FAT",
                     "it describes " + counted(miniFat->count(), "mini sector") + " of " +
                         std::to_string(miniSectors));
    }
    std::uint64_t pastEnd = 0;
    for (std::uint64_t place = miniSectors; place < miniFat->placeCount(); ++place) {
        pastEnd += miniFat->at(place) != freeSector ? 1 : 0;
    }
    if (pastEnd > 0) {
        findings.add(FindingCode::MiniFatPastEnd, "mini FAT",
                     "it allocates " + counted(pastEnd, "mini sector") +
                         " after the end of the mini stream");
    }
}

void CompoundChecker::checkStreams() {
    readable.assign(directory->count(), false);
    for (EntryId id = rootEntry + 1; id < directory->count(); ++id) {
        const DirectoryRecord record = directory->record(id);
        if (record.isStream()) {
            ++found.streams;
            readable[id] = checkStream(id, record);
        } else if (record.isStorage()) {
            ++found.storages;
        }
    }
}

// True when its chain holds all its bytes.
bool CompoundChecker::checkStream(EntryId id, const DirectoryRecord& record) {
    const std::uint64_t size = streamSize(record);
    if (size == 0) {
        if (record.firstSector != endOfChain) {
            findings.add(FindingCode::StreamEmptyStart, directory->place(id),
                         "it is empty, and its first sector is " + numberText(record.firstSector));
        }
        return true;
    }
    const bool isMini = size < miniStreamLimit;
    AllocationTable& table = isMini ? *miniFat : *fat;
    const std::uint64_t needed = partsIn(size, isMini ? miniSectorSize : layout.sectorSize);
    const ChainWalk walk = table.walk(record.firstSector);
    if (walk.end == ChainWalk::End::Mark && walk.length == needed) {
        return true;
    }
    table.report(walk, directory->place(id), needed);
    return walk.length >= needed;
}

void CompoundChecker::checkOrphans() {
    found.freeSectors = fat->reportOrphans();
    miniFat->reportOrphans();
}

// In version 3 the upper half of the field is left out.
std::uint64_t CompoundChecker::streamSize(const DirectoryRecord& record) const {
    return layout.version == 3 ? record.size & 0xFFFFFFFF : record.size;
}

} // namespace olmhost
