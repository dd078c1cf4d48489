#include "host/compound/CompoundLoader.h"

#include <algorithm>

namespace olmhost {

namespace {

constexpr std::uint64_t wholeChain = 0xFFFFFFFFFFFFFFFF;

std::uint64_t partsOf(std::uint64_t size, std::uint64_t partSize) {
    return (size + partSize - 1) / partSize;
}

} // namespace

bool CompoundLoader::load() {
    return loadHeader() && loadDirectory() && linkEntries() && loadMiniStream() && checkStreams();
}

bool CompoundLoader::fail(const char* text) {
    reason = text;
    return false;
}

bool CompoundLoader::takeSector(SectorNumber number) {
    if (number >= reader.sectorCount) {
        return fail("a chain of sectors leads out of the file");
    }
    if (isTaken[number]) {
        return fail("a sector is in two chains, or in one twice");
    }
    isTaken[number] = true;
    return true;
}

bool CompoundLoader::takeMiniSector(SectorNumber number) {
    if (number >= isMiniTaken.size()) {
        return fail("a chain of mini sectors leads out of their stream");
    }
    if (isMiniTaken[number]) {
        return fail("a mini sector is in two chains, or in one twice");
    }
    isMiniTaken[number] = true;
    return true;
}

// Takes the chain from `first` on: `count` sectors, or all up to its end.
bool CompoundLoader::takeChain(SectorNumber first, std::uint64_t count,
                               std::vector<SectorNumber>& chain) {
    SectorNumber number = first;
    while (chain.size() < count) {
        if (number == endOfChain && count == wholeChain) {
            return true;
        }
        if (!takeSector(number)) {
            return false;
        }
        chain.push_back(number);
        number = reader.numberAt(reader.tableSectors, number);
    }
    return true;
}

bool CompoundLoader::loadHeader() {
    FieldReader fields(reader.file.first(std::min(reader.file.size(), sectorSize)));
    const bool isSigned = fields.number<std::uint64_t>() == headerSignature;
    fields.bytes(sizeof(ClassId) + sizeof(std::uint16_t)); // and the minor version
    const auto version = fields.number<std::uint16_t>();
    const auto byteOrder = fields.number<std::uint16_t>();
    const auto shift = fields.number<std::uint16_t>();
    const auto miniShift = fields.number<std::uint16_t>();
    fields.bytes(headerReservedSize + sizeof(std::uint32_t)); // reserved, directory sectors
    const auto tableCount = fields.number<std::uint32_t>();
    firstDirectorySector = fields.number<SectorNumber>();
    fields.bytes(sizeof(std::uint32_t)); // transaction
    const auto cutOff = fields.number<std::uint32_t>();
    firstMiniTableSector = fields.number<SectorNumber>();
    miniTableCount = fields.number<std::uint32_t>();
    const auto firstIndex = fields.number<SectorNumber>();
    fields.bytes(sizeof(std::uint32_t)); // index sectors: their chain is followed
    if (!isSigned || reader.file.size() < sectorSize) {
        return fail("it is not a compound file");
    }
    if (version != headerMajorVersion || byteOrder != headerByteOrder || shift != sectorShift ||
        miniShift != miniSectorShift || cutOff != miniStreamLimit) {
        return fail("it is not a compound file of version 3");
    }
    return loadTable(fields, firstIndex, tableCount);
}

bool CompoundLoader::loadTable(FieldReader& headerIndex, SectorNumber firstIndex,
                               std::uint32_t tableCount) {
    const std::size_t sectors = reader.file.size() / sectorSize;
    reader.sectorCount = static_cast<SectorNumber>(
        std::min<std::size_t>(sectors == 0 ? 0 : sectors - 1, largestSectorNumber));
    isTaken.resize(reader.sectorCount);
    if (!takeIndex(headerIndex, tableSectorsInHeader, tableCount)) {
        return false;
    }
    SectorNumber index = firstIndex;
    while (reader.tableSectors.size() < tableCount) {
        if (!takeSector(index)) {
            return false;
        }
        const ByteSpan sector = reader.sector(index);
        if (!takeIndex(FieldReader(sector), tableSectorsPerIndexSector, tableCount)) {
            return false;
        }
        index = FieldReader(sector.last(sizeof(SectorNumber))).number<SectorNumber>();
    }
    // The table has a number for each sector, so that no look-up leaves it.
    if (std::uint64_t{tableCount} * numbersPerSector < reader.sectorCount) {
        reader.sectorCount = static_cast<SectorNumber>(tableCount * numbersPerSector);
    }
    return true;
}

// Takes the numbers of the FAT's sectors, until `tableCount` are known.
bool CompoundLoader::takeIndex(FieldReader fields, std::size_t places, std::uint32_t tableCount) {
    for (std::size_t i = 0; i < places && reader.tableSectors.size() < tableCount; ++i) {
        const auto number = fields.number<SectorNumber>();
        if (!takeSector(number)) {
            return false;
        }
        reader.tableSectors.push_back(number);
    }
    return true;
}

bool CompoundLoader::loadDirectory() {
    std::vector<SectorNumber> chain;
    if (!takeChain(firstDirectorySector, wholeChain, chain)) {
        return false;
    }
    reader.entries.reserve(chain.size() * entriesPerSector);
    links.reserve(chain.size() * entriesPerSector);
    for (const SectorNumber number : chain) {
        const ByteSpan sector = reader.sector(number);
        for (std::size_t i = 0; i < entriesPerSector; ++i) {
            if (!loadEntry(sector.subspan(i * directoryEntrySize, directoryEntrySize))) {
                return false;
            }
        }
    }
    if (links.empty() || links[rootEntry].type != EntryType::Root) {
        return fail("the directory has no root");
    }
    return true;
}

bool CompoundLoader::loadEntry(ByteSpan record) {
    FieldReader fields(record);
    FieldReader units(fields.bytes((longestName + 1) * sizeof(char16_t)));
    const auto nameBytes = fields.number<std::uint16_t>(); // with the terminator
    const auto type = fields.number<std::uint8_t>();
    fields.bytes(1); // colour
    Links found;
    found.left = fields.number<EntryId>();
    found.right = fields.number<EntryId>();
    found.child = fields.number<EntryId>();
    fields.bytes(sizeof(ClassId) + sizeof(std::uint32_t) + 2 * sizeof(std::uint64_t));
    CompoundReader::Entry entry;
    entry.firstSector = fields.number<SectorNumber>();
    entry.size = fields.number<std::uint32_t>(); // the upper half is ignored in version 3

    found.type = static_cast<EntryType>(type);
    switch (found.type) {
    case EntryType::Unused:
        entry = {};
        break;
    case EntryType::Storage:
    case EntryType::Stream:
    case EntryType::Root:
        entry.isStorage = found.type != EntryType::Stream;
        if (nameBytes < 2 || nameBytes % 2 != 0 || nameBytes / 2 > longestName + 1) {
            return fail("a name in the directory has an impossible length");
        }
        for (int left = nameBytes / 2 - 1; left > 0; --left) {
            entry.name += static_cast<char16_t>(units.number<std::uint16_t>());
        }
        break;
    default:
        return fail("the directory has an entry of an unknown type");
    }
    reader.entries.push_back(std::move(entry));
    links.push_back(found);
    return true;
}

bool CompoundLoader::linkEntries() {
    isLinked.resize(links.size());
    isLinked[rootEntry] = true;
    std::vector<EntryId> storages = {rootEntry};
    while (!storages.empty()) {
        const EntryId storage = storages.back();
        storages.pop_back();
        if (!linkChildren(storage, storages)) {
            return false;
        }
    }
    return true;
}

// Walks the tree of one storage, and adds the storages in it to those that are still to be walked.
bool CompoundLoader::linkChildren(EntryId storage, std::vector<EntryId>& storages) {
    std::vector<EntryId> above; // the path to here, whose right sides still come
    EntryId id = links[storage].child;
    while (id != noEntry || !above.empty()) {
        while (id != noEntry) {
            if (id >= links.size() || isLinked[id] || links[id].type == EntryType::Unused) {
                return fail("the directory's tree is broken");
            }
            isLinked[id] = true;
            above.push_back(id);
            id = links[id].left;
        }
        id = above.back();
        above.pop_back();
        reader.entries[storage].children.push_back(id);
        if (links[id].type != EntryType::Stream) {
            storages.push_back(id);
        }
        id = links[id].right;
    }
    return true;
}

bool CompoundLoader::loadMiniStream() {
    CompoundReader::Entry& root = reader.entries[rootEntry];
    if (!takeChain(firstMiniTableSector, miniTableCount, reader.miniTableSectors) ||
        !takeChain(root.firstSector, partsOf(root.size, sectorSize), reader.miniStream)) {
        return false;
    }
    const std::uint64_t places = reader.miniTableSectors.size() * numbersPerSector;
    isMiniTaken.resize(std::min<std::uint64_t>(places, partsOf(root.size, miniSectorSize)));
    return true;
}

bool CompoundLoader::checkStreams() {
    for (EntryId id = 0; id < links.size(); ++id) {
        CompoundReader::Entry& entry = reader.entries[id];
        // An entry that is in no storage is left out, with whatever is wrong in it.
        if (links[id].type != EntryType::Stream || !isLinked[id]) {
            entry.size = 0;
        } else if (!checkStream(entry)) {
            return false;
        }
    }
    return true;
}

bool CompoundLoader::checkStream(const CompoundReader::Entry& entry) {
    const bool isMini = entry.size < miniStreamLimit;
    SectorNumber number = entry.firstSector;
    std::uint64_t left = partsOf(entry.size, isMini ? miniSectorSize : sectorSize);
    for (; left > 0; --left) {
        if (!(isMini ? takeMiniSector(number) : takeSector(number))) {
            return false;
        }
        number = reader.numberAt(isMini ? reader.miniTableSectors : reader.tableSectors, number);
    }
    return true;
}

} // namespace olmhost
