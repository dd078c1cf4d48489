#include "host/check/CheckedDirectory.h"

#include "host/check/FindingList.h"

namespace olmhost {

void CheckedDirectory::load(std::vector<SectorNumber> sectors) {
    directorySectors = std::move(sectors);
    places.assign(directorySectors.size() * (layout.sectorSize / directoryEntrySize), {});
}

ByteSpan CheckedDirectory::bytes(EntryId id) const {
    const std::size_t perSector = layout.sectorSize / directoryEntrySize;
    const std::uint64_t sectorStart = layout.offsetOf(directorySectors[id / perSector]);
    return file.bytes(sectorStart + id % perSector * directoryEntrySize, directoryEntrySize);
}

void CheckedDirectory::addMember(EntryId storage, EntryId previous, EntryId id) {
    if (previous == noEntry) {
        places[storage].firstMember = id;
    } else {
        places[previous].nextMember = id;
    }
}

std::string CheckedDirectory::path(EntryId id) const {
    if (id == rootEntry) {
        return "/";
    }
    constexpr int maxNames = 8;
    std::string text;
    for (int names = 0; id != rootEntry && names < maxNames; ++names) {
        text.insert(0, nameText(record(id).name())).insert(0, 1, '/');
        id = places[id].parent;
    }
    return id == rootEntry ? text : "/..." + text;
}

std::string CheckedDirectory::place(EntryId id) const {
    const std::string name = isReached(id) ? path(id) : nameText(record(id).name());
    return "entry " + std::to_string(id) + ", '" + name + "'";
}

} // namespace olmhost
