#ifndef OLMKIT_HOST_CHECK_ALLOCATIONTABLE_H
#define OLMKIT_HOST_CHECK_ALLOCATIONTABLE_H

#include <string>
#include <string_view>
#include <vector>

#include "host/check/FindingList.h"
#include "host/check/HeaderChecker.h"
#include "host/check/PagedFile.h"
#include "host/compound/CompoundFormat.h"

namespace olmhost {

// How far a chain of sectors could be followed.
struct ChainWalk {
    enum class End {
        Mark,      // the mark of a chain's end: all is well
        OutOfFile, // a number that no sector has
        Shared,    // a sector that something else has, or that this chain has already
        Free,      // a sector that the table calls free
    };

    End end = End::Mark;
    std::uint64_t length = 0;       // sectors
    SectorNumber last = endOfChain; // where it ended
};

// The FAT or the mini FAT of a file, and which of the sectors that it describes have an owner.
//
// Held in memory are the numbers of its own sectors and a bit for each sector that it describes.
class AllocationTable {
public:
    // `file`, `layout` and `findings` are borrowed. `noun` is what the table describes, such as
    // "mini sector"; it lives as long as the program.
    AllocationTable(PagedFile& file, const CompoundLayout& layout, FindingList& findings,
                    std::string_view noun)
        : file(file), layout(layout), findings(findings), noun(noun) {}

    // Takes the sectors of the table, each of which lies in the file or is endOfChain: lost. The
    // table describes `wanted` sectors, or as many as it has numbers for.
    void load(std::vector<SectorNumber> sectors, std::uint64_t wanted);

    // Returns how many sectors it describes.
    std::uint64_t count() const { return owned.size(); }

    // Returns how many numbers it has, including those past the last sector.
    std::uint64_t placeCount() const { return tableSectors.size() * numbersPerTableSector(); }

    // Returns what the table has at `place`, below placeCount(): the sector that follows, or a
    // mark.
    SectorNumber at(std::uint64_t place) const;

    // Marks a sector as owned. Returns false when it already is. REQUIRES: sector < count().
    bool claim(SectorNumber sector);

    // Claims the sectors of the chain that begins with `first`, and adds them to `kept` unless that
    // is null.
    ChainWalk walk(SectorNumber first, std::vector<SectorNumber>* kept = nullptr);

    // Reports what is wrong with the chain of `place`, as findings call it: where it ended or,
    // unless it has `needed` sectors, its length.
    void report(const ChainWalk& walk, const std::string& place, std::uint64_t needed);

    // Reports where a chain ended, unless that is its mark.
    void reportEnd(const ChainWalk& walk, const std::string& place);

    // Reports the sectors that are not free and that nothing owns. Returns how many are free.
    std::uint64_t reportOrphans();

private:
    std::size_t numbersPerTableSector() const { return layout.sectorSize / sizeof(SectorNumber); }

    PagedFile& file;
    const CompoundLayout& layout;
    FindingList& findings;
    std::string_view noun;
    std::vector<SectorNumber> tableSectors;
    std::vector<bool> owned; // by sector
};

} // namespace olmhost

#endif
