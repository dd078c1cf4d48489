#include "host/compound/OutputBuffer.h"

#include <cassert>
#include <cstring>

namespace olmhost {

OutputBuffer::OutputBuffer(ByteSink& target)
    : sink(target), gathered(std::make_unique_for_overwrite<std::byte[]>(capacity)) {}

void OutputBuffer::append(ByteSpan bytes) {
    if (bytes.size() > capacity - gatheredSize) {
        flush();
    }
    if (bytes.size() >= capacity) {
        deliver(bytes);
        return;
    }
    if (!bytes.empty()) {
        std::memcpy(gathered.get() + gatheredSize, bytes.data(), bytes.size());
        gatheredSize += bytes.size();
    }
}

void OutputBuffer::flush() {
    if (gatheredSize != 0) {
        deliver({gathered.get(), gatheredSize});
        gatheredSize = 0;
    }
}

void OutputBuffer::overwriteStart(ByteSpan bytes) {
    assert(gatheredSize == 0);
    if (!hasFailed) {
        hasFailed = !sink.overwrite(0, bytes);
    }
}

void OutputBuffer::deliver(ByteSpan bytes) {
    if (!hasFailed) {
        hasFailed = !sink.append(bytes);
    }
}

} // namespace olmhost
