#ifndef OLMKIT_HOST_COMPOUND_SECTORSTORE_H
#define OLMKIT_HOST_COMPOUND_SECTORSTORE_H

#include "host/compound/CompoundFormat.h"
#include "host/compound/CompoundHeader.h"
#include "host/compound/OutputBuffer.h"
#include "host/compound/SectorTable.h"
#include "host/stream/ByteSink.h"

namespace olmhost {

// The file as a row of sectors, numbered in the order in which they are added. What is added goes
// to the output at once; the table of what follows what stays here until finish().
class SectorStore {
public:
    // Begins the output with a blank header. `target` is borrowed and must outlive the store.
    explicit SectorStore(ByteSink& target);

    // Adds `sectors`, whole ones and at least one, to the chain that ends in `last` (endOfChain:
    // begins one). Gives the number of the chain's new last sector, which endChain() or
    // another call has yet to give its follower; the first of the new ones is in `first`.
    SectorNumber append(SectorNumber last, ByteSpan sectors, SectorNumber& first);

    // Nothing follows `last` any more.
    void endChain(SectorNumber last) { table.set(last, endOfChain); }

    // The chain's sectors are nobody's. Their bytes stay where they are.
    void freeChain(SectorNumber first) { table.freeChain(first); }

    // Adds the table, then puts `header`, with the fields of the table filled in, over the blank
    // one. Every chain has its end by now.
    void finish(CompoundHeader header);

    void fail() { output.fail(); }
    bool failed() const { return output.failed(); }

private:
    void addTableSectors(CompoundHeader& header);

    OutputBuffer output;
    SectorTable table;
};

} // namespace olmhost

#endif
