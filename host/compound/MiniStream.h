#ifndef OLMKIT_HOST_COMPOUND_MINISTREAM_H
#define OLMKIT_HOST_COMPOUND_MINISTREAM_H

#include "host/compound/CompoundFormat.h"
#include "host/compound/CompoundHeader.h"
#include "host/compound/SectorChain.h"
#include "host/compound/SectorStore.h"
#include "host/compound/SectorTable.h"

namespace olmhost {

// The stream that contains all short streams, in mini sectors (MS-CFB 2.4). It is written sector by
// sector like any long stream; its table and less than one sector are held.
class MiniStream {
public:
    // `target` is borrowed and must outlive the mini stream.
    explicit MiniStream(SectorStore& target) : store(target), contents(target) {}

    // Stores one whole short stream. Returns its first mini sector; endOfChain when it is empty.
    SectorNumber append(ByteSpan bytes);

    // Marks the chain's mini sectors as free.
    void freeChain(SectorNumber first) { table.freeChain(first); }

    // Ends the stream, adds its table to the store and stores in `header` where it is. Returns the
    // stream's first sector.
    SectorNumber finish(CompoundHeader& header);

    // Returns the size in bytes.
    std::uint64_t size() const { return table.size() * miniSectorSize; }

private:
    SectorStore& store;
    SectorChain contents;
    SectorTable table;
};

} // namespace olmhost

#endif
