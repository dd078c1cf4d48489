#ifndef OLMKIT_HOST_STREAM_LIMITS_H
#define OLMKIT_HOST_STREAM_LIMITS_H

#include <cstdint>

namespace olmhost {

// Bounds against archives that are made to exhaust the reader. The defaults are far above what any
// real archive holds; what exceeds one is refused as a fault of that entry.
struct Limits {
    std::uint64_t largestEntry = std::uint64_t{256} << 30; // bytes, uncompressed
    std::uint32_t largestRatio = 500;                      // uncompressed to compressed bytes ...
    std::uint64_t ratioFrom = std::uint64_t{1} << 30;      // ... of entries above this size, bytes
    std::uint32_t deepestNesting = 1000;                   // open elements
    std::uint64_t longestAttribute = std::uint64_t{16} << 20; // bytes of one start tag, UTF-8
    std::uint64_t longestBlank = std::uint64_t{16} << 20;     // bytes of white space on end
};

} // namespace olmhost

#endif
