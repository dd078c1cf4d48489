#ifndef OLMKIT_HOST_STREAM_LIMITS_H
#define OLMKIT_HOST_STREAM_LIMITS_H

#include <cstdint>

namespace olmhost {

// Limits against archives that are made to exhaust a reader. The defaults are far above what any
// real archive holds. What exceeds a limit is not read, and is a fault of that entry.
struct Limits {
    std::uint64_t largestEntry = std::uint64_t{256} << 30; // bytes, uncompressed
    std::uint32_t largestRatio = 500;                      // uncompressed to compressed bytes ...
    std::uint64_t ratioFrom = std::uint64_t{1} << 30;      // ... of entries above this size, bytes
    std::uint32_t deepestNesting = 1000;                   // open elements
    std::uint64_t longestAttribute = std::uint64_t{16} << 20; // bytes of one start tag, UTF-8
    std::uint64_t longestBlank = std::uint64_t{16} << 20;     // bytes of white space in a row
};

} // namespace olmhost

#endif
