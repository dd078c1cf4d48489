#include "host/compound/SectorChain.h"

#include <algorithm>
#include <cstring>

namespace olmhost {

void SectorChain::append(ByteSpan bytes) {
    if (tailSize != 0) {
        const std::size_t taken = std::min(bytes.size(), sectorSize - tailSize);
        std::copy_n(bytes.begin(), taken, tail.begin() + tailSize);
        tailSize += taken;
        bytes = bytes.subspan(taken);
        if (tailSize < sectorSize) {
            return;
        }
        appendSectors(tail);
        tailSize = 0;
    }
    const std::size_t whole = bytes.size() - bytes.size() % sectorSize;
    if (whole != 0) {
        appendSectors(bytes.first(whole));
        bytes = bytes.subspan(whole);
    }
    std::copy(bytes.begin(), bytes.end(), tail.begin());
    tailSize = bytes.size();
}

SectorNumber SectorChain::close() {
    if (tailSize != 0) {
        std::fill(tail.begin() + tailSize, tail.end(), std::byte{0});
        appendSectors(tail);
        tailSize = 0;
    }
    if (last != endOfChain) {
        store.endChain(last);
    }
    return first;
}

void SectorChain::appendSectors(ByteSpan sectors) {
    SectorNumber firstAdded = endOfChain;
    last = store.append(last, sectors, firstAdded);
    if (first == endOfChain) {
        first = firstAdded;
    }
}

} // namespace olmhost
