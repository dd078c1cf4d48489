#ifndef OLMKIT_HOST_CHECK_STREAMCURSOR_H
#define OLMKIT_HOST_CHECK_STREAMCURSOR_H

#include <vector>

#include "host/check/CompoundChecker.h"

namespace olmhost {

// Reads a stream of a checked file from its first byte to its last.
class StreamCursor {
public:
    // `compound` is borrowed. REQUIRES: compound.isReadable(stream)
    StreamCursor(CompoundChecker& compound, EntryId stream);

    // Bytes that are left.
    std::uint64_t remaining() const { return left; }

    // Fills `place`. False, without reading, when fewer bytes are left. Throws ReadFailure.
    bool read(std::span<std::byte> place);

    // Passes over bytes, as read() does.
    bool skip(std::uint64_t count);

private:
    void enterNextPart();

    CompoundChecker& compound;
    bool isMini;
    std::size_t partSize;   // bytes of a sector or a mini sector
    std::uint64_t left;     // bytes
    SectorNumber part;      // the sector or mini sector in which the next byte is
    std::size_t offset = 0; // of that byte in it
};

// Returns the bytes of a stream, at most the first `limit`. REQUIRES: compound.isReadable(stream)
std::vector<std::byte> readStream(CompoundChecker& compound, EntryId stream, std::uint64_t limit);

} // namespace olmhost

#endif
