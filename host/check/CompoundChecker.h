#ifndef OLMKIT_HOST_CHECK_COMPOUNDCHECKER_H
#define OLMKIT_HOST_CHECK_COMPOUNDCHECKER_H

#include <optional>
#include <vector>

#include "host/check/AllocationTable.h"
#include "host/check/CheckedDirectory.h"
#include "host/check/FindingList.h"
#include "host/check/HeaderChecker.h"
#include "host/check/PagedFile.h"
#include "host/check/RandomAccess.h"

namespace olmhost {

// What a compound file consists of.
struct CompoundCounts {
    std::uint64_t sectors = 0;
    std::uint64_t freeSectors = 0;
    std::uint64_t storages = 0; // without the root
    std::uint64_t streams = 0;
};

// Checks a compound file of version 3 or 4 (MS-CFB): header, tables, directory, every chain, and
// what nothing reaches. After a finding the check goes on with everything that can still be read.
//
// The file may be hostile. Each sector is taken once, so the time is in proportion to the file's
// size; held in memory are some bits for each sector and some bytes for each directory entry.
class CompoundChecker {
public:
    // Both are borrowed and must outlive the checker.
    CompoundChecker(RandomAccess& source, FindingList& findings)
        : file(source), findings(findings) {}
    CompoundChecker(const CompoundChecker&) = delete;
    CompoundChecker& operator=(const CompoundChecker&) = delete;

    // Checks the whole file; called once. Returns false when it has no directory; then none of the
    // other functions except counts() may be called. Throws ReadFailure.
    bool check();

    const CompoundCounts& counts() const { return found; }
    const CheckedDirectory& entries() const { return *directory; }

    // Returns whether an entry is a stream with a chain that holds all its bytes.
    bool isReadable(EntryId id) const { return readable[id]; }

    // Returns the size of a stream in bytes.
    std::uint64_t streamSize(EntryId id) const { return streamSize(directory->record(id)); }

private:
    friend class StreamCursor;

    bool loadDirectory();
    void checkMiniStream();
    void checkMiniFat(std::uint64_t miniSectors);
    void checkStreams();
    bool checkStream(EntryId id, const DirectoryRecord& record);
    void checkOrphans();
    std::uint64_t streamSize(const DirectoryRecord& record) const;

    PagedFile file;
    FindingList& findings;
    CompoundLayout layout;
    std::optional<AllocationTable> fat;
    std::optional<AllocationTable> miniFat;
    std::optional<CheckedDirectory> directory;
    std::vector<SectorNumber> miniStream; // the sectors that hold the mini sectors
    std::vector<bool> readable;           // by entry
    CompoundCounts found;
};

} // namespace olmhost

#endif
