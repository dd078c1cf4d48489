#ifndef OLMKIT_HOST_ARCHIVE_INFLATEDENTRIES_H
#define OLMKIT_HOST_ARCHIVE_INFLATEDENTRIES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/archive/InflatedEntry.h"

namespace olmhost {

// The deflated entries of an archive that were opened last, each as far inflated as it was left. So
// one that is closed and opened again goes on where it was, and a new one takes over the memory of
// one that nobody reads any more.
class InflatedEntries {
public:
    static constexpr std::size_t mostHeld = 4;

    // Both are borrowed and must outlive what is opened here.
    InflatedEntries(ArchiveBytes& bytes, ArchiveFile& file) : bytes(bytes), file(file) {}

    // The entry `index`, which all its readers share.
    std::shared_ptr<InflatedEntry> open(std::uint64_t index, const EntryInfo& info);

    // Bytes inflated so far, over all entries.
    std::uint64_t inflatedBytes() const { return inflated; }

private:
    std::shared_ptr<InflatedEntry> takeOldest();

    ArchiveBytes& bytes;
    ArchiveFile& file;
    InflatePoints points;
    std::uint64_t inflated = 0;
    std::vector<std::shared_ptr<InflatedEntry>> held; // the last opened stands last
};

} // namespace olmhost

#endif
