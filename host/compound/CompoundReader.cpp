#include "host/compound/CompoundReader.h"

#include <algorithm>

#include "host/compound/CompoundLoader.h"

namespace olmhost {

std::unique_ptr<CompoundReader> CompoundReader::open(ByteSpan file, std::string& failure) {
    std::unique_ptr<CompoundReader> reader(new CompoundReader);
    reader->file = file;
    CompoundLoader loader(*reader);
    if (!loader.load()) {
        failure = loader.failure();
        return nullptr;
    }
    return reader;
}

void CompoundReader::read(EntryId id, const std::function<void(ByteSpan)>& take,
                          std::size_t limit) const {
    const Entry& stream = entries[id];
    const bool isMini = stream.size < miniStreamLimit;
    SectorNumber number = stream.firstSector;
    for (std::size_t left = std::min<std::size_t>(stream.size, limit); left > 0;) {
        const ByteSpan piece = isMini ? miniSector(number) : sector(number);
        const std::size_t count = std::min(left, piece.size());
        take(piece.first(count));
        left -= count;
        if (left > 0) {
            number = numberAt(isMini ? miniTableSectors : tableSectors, number);
        }
    }
}

std::vector<std::byte> CompoundReader::bytes(EntryId id, std::size_t limit) const {
    std::vector<std::byte> result;
    result.reserve(std::min<std::size_t>(limit, entries[id].size));
    const auto keep = [&](ByteSpan piece) {
        result.insert(result.end(), piece.begin(), piece.end());
    };
    read(id, keep, limit);
    return result;
}

ByteSpan CompoundReader::sector(SectorNumber number) const {
    return file.subspan((std::size_t{number} + 1) * sectorSize, sectorSize);
}

ByteSpan CompoundReader::miniSector(SectorNumber number) const {
    constexpr std::size_t perSector = sectorSize / miniSectorSize;
    return sector(miniStream[number / perSector])
        .subspan(number % perSector * miniSectorSize, miniSectorSize);
}

SectorNumber CompoundReader::numberAt(const std::vector<SectorNumber>& table,
                                      SectorNumber place) const {
    const ByteSpan numbers = sector(table[place / numbersPerSector]);
    return FieldReader(numbers.subspan(place % numbersPerSector * sizeof(SectorNumber)))
        .number<SectorNumber>();
}

} // namespace olmhost
