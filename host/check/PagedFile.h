#ifndef OLMKIT_HOST_CHECK_PAGEDFILE_H
#define OLMKIT_HOST_CHECK_PAGEDFILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/check/RandomAccess.h"
#include "host/compound/CompoundFormat.h"

namespace olmhost {

// Thrown when bytes of the file can't be read: nothing can be said of the file then.
struct ReadFailure {
    int errorNumber;
};

// A file of which a few pages are held: 256 KB at most, however large the file is.
class PagedFile {
public:
    static constexpr std::size_t pageSize = 4096; // bytes; the largest sector of a compound file

    // `source` is borrowed and must outlive the object.
    explicit PagedFile(RandomAccess& source) : source(source), fileSize(source.size()) {}

    std::uint64_t size() const { return fileSize; }

    // Returns `count` bytes from `offset` on, valid until the next call. Throws ReadFailure.
    // REQUIRES: they lie within the file and within one page.
    ByteSpan bytes(std::uint64_t offset, std::size_t count);

private:
    struct Page {
        std::uint64_t number = 0;
        bool isFilled = false;
        std::array<std::byte, pageSize> bytes;
    };

    RandomAccess& source;
    std::uint64_t fileSize;
    std::array<std::unique_ptr<Page>, 64> pages; // a page is at its number modulo their count
};

} // namespace olmhost

#endif
