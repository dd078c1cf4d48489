#ifndef OLMKIT_HOST_COMPOUND_OUTPUTBUFFER_H
#define OLMKIT_HOST_COMPOUND_OUTPUTBUFFER_H

#include <memory>

#include "host/compound/CompoundFormat.h"
#include "host/stream/ByteSink.h"

namespace olmhost {

// Collects bytes for a sink into large appends. After the first failure nothing more is passed to
// the sink.
class OutputBuffer {
public:
    // `target` is borrowed and must outlive the buffer.
    explicit OutputBuffer(ByteSink& target);

    void append(ByteSpan bytes);

    // Passes on what was collected.
    void flush();

    // Replaces bytes at the start of the output, all of which were flushed.
    void overwriteStart(ByteSpan bytes);

    // Behaves as if the sink had failed.
    void fail() { hasFailed = true; }
    bool failed() const { return hasFailed; }

private:
    static constexpr std::size_t capacity = std::size_t{64} << 10; // bytes

    void deliver(ByteSpan bytes);

    ByteSink& sink;
    std::unique_ptr<std::byte[]> collected;
    std::size_t collectedSize = 0; // bytes
    bool hasFailed = false;
};

} // namespace olmhost

#endif
