#ifndef OLMKIT_HOST_COMPOUND_SECTORSTORE_H
#define OLMKIT_HOST_COMPOUND_SECTORSTORE_H

#include "host/compound/CompoundFormat.h"
#include "host/compound/CompoundHeader.h"
#include "host/compound/OutputBuffer.h"
#include "host/compound/SectorTable.h"
#include "host/stream/ByteSink.h"

namespace olmhost {

// The file as a sequence of sectors, numbered in the order in which they are added. They go to the
// output at once; the table of which sector follows which is held until finish().
class SectorStore {
public:
    // Begins the output with a blank header. `target` is borrowed and must outlive the store.
    explicit SectorStore(ByteSink& target);

    // Adds `sectors`, whole ones and at least one, to the chain that ends in `last` (endOfChain:
    // begins one). Returns the chain's new last sector, whose follower is set by endChain() or the
    // next call; stores the first of the new ones in `first`.
    SectorNumber append(SectorNumber last, ByteSpan sectors, SectorNumber& first);

    // Ends the chain at `last`.
    void endChain(SectorNumber last) { table.set(last, endOfChain); }

    // Marks the chain's sectors as free. Their bytes stay where they are.
    void freeChain(SectorNumber first) { table.freeChain(first); }

    // Adds the table, then overwrites the blank header with `header`, with the fields of the table
    // filled in.
    // REQUIRES: every chain has ended.
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
