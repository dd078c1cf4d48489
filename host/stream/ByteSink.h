#ifndef OLMKIT_HOST_STREAM_BYTESINK_H
#define OLMKIT_HOST_STREAM_BYTESINK_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/stream/Export.h"

namespace olmhost {

// Receives the bytes of one output: a file or a buffer, for example.
class OLMHOST_EXPORT ByteSink {
public:
    virtual ~ByteSink() = default;

    // Appends bytes. Returns false when not all of them were written; the output is lost then.
    virtual bool append(std::span<const std::byte> bytes) = 0;

    // Replaces bytes that were appended before, `offset` bytes from the start. Returns false as
    // append() does.
    virtual bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
};

} // namespace olmhost

#endif
