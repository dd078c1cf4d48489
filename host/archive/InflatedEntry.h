#ifndef OLMKIT_HOST_ARCHIVE_INFLATEDENTRY_H
#define OLMKIT_HOST_ARCHIVE_INFLATEDENTRY_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/archive/EntryData.h"
#include "host/archive/InflatePoints.h"
#include "host/archive/Inflater.h"

namespace olmhost {

// A deflated entry. Continues inflating where it stopped, for whichever handle reads next.
//
// Holds the bytes inflated last, in a ring, so that a reader that read ahead may come back a
// little; the entry's first bytes, so that a document's beginning can be read again for each of its
// items; and, once a reader has skipped a stretch or gone back a long way, InflatePoints. An entry
// that is read sequentially makes no points. An object serves one entry after another and keeps its
// memory.
class InflatedEntry final : public EntryData {
public:
    static constexpr std::size_t ringSize = std::size_t{128} << 10;
    static constexpr std::size_t headSize = std::size_t{64} << 10;
    static constexpr std::size_t stepSize = std::size_t{32}
                                            << 10; // bytes inflated at once, at most

    // All are borrowed and must outlive the entry. Adds to `inflatedBytes` what is inflated.
    InflatedEntry(ArchiveBytes& bytes, ArchiveFile& file, InflatePoints& points,
                  std::uint64_t& inflatedBytes);

    // Begins with another entry.
    void begin(std::uint64_t newIndex, const EntryInfo& newInfo);

    std::size_t read(std::uint64_t position, void* buffer, std::size_t size) override;

private:
    std::size_t copyHeld(std::uint64_t position, void* buffer, std::size_t size) const;
    void goTo(std::uint64_t position);
    void advance();
    void inflateStep();
    void keepHead();

    InflatePoints& points;
    std::uint64_t& inflatedBytes;
    Inflater inflater;
    std::unique_ptr<std::byte[]> ring; // the byte at position p is at p % ringSize
    std::uint64_t ringStart = 0;       // position of the oldest byte in it
    std::uint64_t ringEnd = 0;         // of the byte after the newest; at most the entry's end
    std::vector<std::byte> head;       // the first bytes, once they have left the ring
    bool keepsPoints = false;
};

} // namespace olmhost

#endif
