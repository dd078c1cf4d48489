#ifndef OLMKIT_HOST_ARCHIVE_INFLATEDENTRIES_H
#define OLMKIT_HOST_ARCHIVE_INFLATEDENTRIES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/archive/InflatedEntry.h"

namespace olmhost {

// The deflated entries of an archive that were opened last, in the state in which they were left.
// An entry that is opened again continues where it was, unless its reading failed, and a new one
// reuses the memory of one that is no longer read.
class InflatedEntries {
public:
    static constexpr std::size_t maxHeld = 4;

    // Both are borrowed and must outlive what is opened here.
    InflatedEntries(ArchiveBytes& bytes, ArchiveFile& file) : bytes(bytes), file(file) {}

    // Returns the entry `index`, which all its readers share.
    std::shared_ptr<InflatedEntry> open(std::uint64_t index, const EntryInfo& info);

    // Returns the bytes inflated so far, over all entries.
    std::uint64_t inflatedBytes() const { return inflated; }

private:
    std::shared_ptr<InflatedEntry> takeOldest();

    ArchiveBytes& bytes;
    ArchiveFile& file;
    InflatePoints points;
    std::uint64_t inflated = 0;
    std::vector<std::shared_ptr<InflatedEntry>> held; // in the order of opening
};

} // namespace olmhost

#endif
