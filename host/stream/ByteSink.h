#ifndef OLMKIT_HOST_STREAM_BYTESINK_H
#define OLMKIT_HOST_STREAM_BYTESINK_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace olmhost {

// Takes the bytes of one output: a file, a buffer, whatever the caller has.
class ByteSink {
public:
    virtual ~ByteSink() = default;

    // Adds bytes at the end. False when not all of them were taken; the output is lost then.
    virtual bool append(std::span<const std::byte> bytes) = 0;

    // Replaces bytes that were added before, `offset` bytes from the start. False as above.
    virtual bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
};

} // namespace olmhost

#endif
