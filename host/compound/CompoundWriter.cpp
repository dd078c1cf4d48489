#include "host/compound/CompoundWriter.h"

#include <cassert>
#include <vector>

namespace olmhost {

std::optional<EntryReference> CompoundWriter::make(EntryReference parent, EntryType type,
                                                   std::u16string_view name) {
    if (isFinished) {
        return std::nullopt;
    }
    std::vector<StreamPlace> dropped;
    const std::optional<EntryReference> made = directory.make(parent, type, name, dropped);
    for (const StreamPlace& place : dropped) {
        freePlace(place);
    }
    return made;
}

void CompoundWriter::storeShort(EntryReference stream, ByteSpan bytes) {
    if (directory.isCurrent(stream)) {
        const SectorNumber first = miniStream.append(bytes);
        directory.place(stream, {first, static_cast<std::uint32_t>(bytes.size())});
    }
}

void CompoundWriter::storeLong(EntryReference stream, StreamPlace place) {
    if (directory.isCurrent(stream)) {
        directory.place(stream, place);
    } else {
        freePlace(place);
    }
}

void CompoundWriter::finish() {
    assert(!isFinished);
    isFinished = true;
    if (failed()) {
        return;
    }
    CompoundHeader header;
    const SectorNumber first = miniStream.finish(header);
    directory.place(Directory::root(), {first, static_cast<std::uint32_t>(miniStream.size())});
    header.firstDirectorySector = directory.finish(store);
    store.finish(header);
}

void CompoundWriter::freePlace(StreamPlace place) {
    if (place.size < miniStreamLimit) {
        miniStream.freeChain(place.firstSector);
    } else {
        store.freeChain(place.firstSector);
    }
}

} // namespace olmhost
