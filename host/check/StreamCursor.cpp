#include "host/check/StreamCursor.h"

#include <algorithm>

namespace olmhost {

StreamCursor::StreamCursor(CompoundChecker& compound, EntryId stream)
    : compound(compound), left(compound.streamSize(stream)) {
    isMini = left < miniStreamLimit;
    partSize = isMini ? miniSectorSize : compound.layout.sectorSize;
    part = compound.directory->record(stream).firstSector;
}

bool StreamCursor::read(std::span<std::byte> place) {
    if (place.size() > left) {
        return false;
    }
    const std::size_t perSector = compound.layout.sectorSize / miniSectorSize;
    while (!place.empty()) {
        enterNextPart();
        const std::size_t count = std::min(place.size(), partSize - offset);
        const std::uint64_t start =
            isMini ? compound.layout.offsetOf(compound.miniStream[part / perSector]) +
                         part % perSector * miniSectorSize
                   : compound.layout.offsetOf(part);
        std::ranges::copy(compound.file.bytes(start + offset, count), place.begin());
        place = place.subspan(count);
        offset += count;
        left -= count;
    }
    return true;
}

bool StreamCursor::skip(std::uint64_t count) {
    if (count > left) {
        return false;
    }
    while (count > 0) {
        enterNextPart();
        const std::uint64_t passed = std::min<std::uint64_t>(count, partSize - offset);
        offset += static_cast<std::size_t>(passed);
        left -= passed;
        count -= passed;
    }
    return true;
}

void StreamCursor::enterNextPart() {
    if (offset == partSize) {
        part = (isMini ? *compound.miniFat : *compound.fat).at(part);
        offset = 0;
    }
}

std::vector<std::byte> readStream(CompoundChecker& compound, EntryId stream, std::uint64_t limit) {
    StreamCursor cursor(compound, stream);
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min(limit, cursor.remaining())));
    cursor.read(bytes);
    return bytes;
}

} // namespace olmhost
