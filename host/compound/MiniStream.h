#ifndef OLMKIT_HOST_COMPOUND_MINISTREAM_H
#define OLMKIT_HOST_COMPOUND_MINISTREAM_H

#include "host/compound/CompoundFormat.h"
#include "host/compound/CompoundHeader.h"
#include "host/compound/SectorChain.h"
#include "host/compound/SectorStore.h"
#include "host/compound/SectorTable.h"

namespace olmhost {

// The stream in which all short streams lie, in mini sectors. It goes out sector by sector like
// any long stream; held are its table and less than one sector.
class MiniStream {
public:
    // `target` is borrowed and must outlive the mini stream.
    explicit MiniStream(SectorStore& target) : store(target), contents(target) {}

    // Stores one whole short stream and gives its first mini sector, endOfChain when it is empty.
    SectorNumber append(ByteSpan bytes);

    // The chain's mini sectors are nobody's.
    void freeChain(SectorNumber first) { table.freeChain(first); }

    // Ends the stream and adds its table to the store, telling `header` where it is. Gives the
    // stream's first sector.
    SectorNumber finish(CompoundHeader& header);

    // Bytes.
    std::uint64_t size() const { return table.size() * miniSectorSize; }

private:
    SectorStore& store;
    SectorChain contents;
    SectorTable table;
};

} // namespace olmhost

#endif
