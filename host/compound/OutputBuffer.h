#ifndef OLMKIT_HOST_COMPOUND_OUTPUTBUFFER_H
#define OLMKIT_HOST_COMPOUND_OUTPUTBUFFER_H

#include <memory>

#include "host/compound/CompoundFormat.h"
#include "host/stream/ByteSink.h"

namespace olmhost {

// Gathers bytes for a sink into large appends and keeps the first failure: from then on nothing is
// given to the sink any more.
class OutputBuffer {
public:
    // `target` is borrowed and must outlive the buffer.
    explicit OutputBuffer(ByteSink& target);

    void append(ByteSpan bytes);

    // Hands over what was gathered.
    void flush();

    // Replaces bytes at the start of the output, all of which were flushed.
    void overwriteStart(ByteSpan bytes);

    // Counts as a failure of the sink, whatever it was.
    void fail() { hasFailed = true; }
    bool failed() const { return hasFailed; }

private:
    static constexpr std::size_t capacity = std::size_t{64} << 10; // bytes

    void deliver(ByteSpan bytes);

    ByteSink& sink;
    std::unique_ptr<std::byte[]> gathered;
    std::size_t gatheredSize = 0; // bytes
    bool hasFailed = false;
};

} // namespace olmhost

#endif
