#ifndef OLMKIT_HOST_COMPOUND_SECTORCHAIN_H
#define OLMKIT_HOST_COMPOUND_SECTORCHAIN_H

#include <array>

#include "host/compound/CompoundFormat.h"
#include "host/compound/SectorStore.h"

namespace olmhost {

// Collects bytes into a chain of sectors. Whole sectors go to the store at once; only the bytes of
// an incomplete one are held.
class SectorChain {
public:
    // `target` is borrowed and must outlive the chain.
    explicit SectorChain(SectorStore& target) : store(target) {}

    void append(ByteSpan bytes);

    // Pads the last sector with zeros and ends the chain; nothing is appended after that. Returns
    // the first sector; endOfChain when there were no bytes.
    SectorNumber close();

private:
    void appendSectors(ByteSpan sectors);

    SectorStore& store;
    SectorNumber first = endOfChain;
    SectorNumber last = endOfChain;
    std::size_t tailSize = 0; // bytes; below sectorSize between two calls
    std::array<std::byte, sectorSize> tail;
};

} // namespace olmhost

#endif
