#ifndef OLMKIT_HOST_COMPOUND_SECTORCHAIN_H
#define OLMKIT_HOST_COMPOUND_SECTORCHAIN_H

#include <array>

#include "host/compound/CompoundFormat.h"
#include "host/compound/SectorStore.h"

namespace olmhost {

// Bytes on their way into sectors of their own. Whole sectors go to the store as they come; only
// what doesn't fill one yet is held.
class SectorChain {
public:
    // `target` is borrowed and must outlive the chain.
    explicit SectorChain(SectorStore& target) : store(target) {}

    void append(ByteSpan bytes);

    // Fills the last sector up with zeros and ends the chain; nothing is appended behind that.
    // Gives the first sector, endOfChain when there was no byte.
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
