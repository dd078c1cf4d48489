#include "host/compound/MiniStream.h"

#include <cassert>

namespace olmhost {

SectorNumber MiniStream::append(ByteSpan bytes) {
    assert(bytes.size() < miniStreamLimit);
    if (bytes.empty()) {
        return endOfChain;
    }
    const std::size_t count = (bytes.size() + miniSectorSize - 1) / miniSectorSize;
    if (size() + count * miniSectorSize > largestStream) {
        store.fail();
        return endOfChain;
    }
    const SectorNumber first = table.add();
    SectorNumber last = first;
    for (std::size_t i = 1; i < count; ++i) {
        last = table.add();
    }
    table.set(last, endOfChain);

    constexpr std::array<std::byte, miniSectorSize> zeros{};
    contents.append(bytes);
    contents.append(ByteSpan(zeros).first(count * miniSectorSize - bytes.size()));
    return first;
}

SectorNumber MiniStream::finish(CompoundHeader& header) {
    const SectorNumber first = contents.close();
    SectorChain tableChain(store);
    for (std::uint32_t i = 0; i < table.tableSectorCount(); ++i) {
        tableChain.append(table.encoded(i));
    }
    header.firstMiniTableSector = tableChain.close();
    header.miniTableSectors = table.tableSectorCount();
    return first;
}

} // namespace olmhost
