#include "host/compound/OutputBuffer.h"

#include <cassert>
#include <cstring>

namespace olmhost {

OutputBuffer::OutputBuffer(ByteSink& target)
    : sink(target), collected(std::make_unique_for_overwrite<std::byte[]>(capacity)) {}

void OutputBuffer::append(ByteSpan bytes) {
    if (bytes.size() > capacity - collectedSize) {
        flush();
    }
    if (bytes.size() >= capacity) {
        deliver(bytes);
        return;
    }
    if (!bytes.empty()) {
        std::memcpy(collected.get() + collectedSize, bytes.data(), bytes.size());
        collectedSize += bytes.size();
    }
}

void OutputBuffer::flush() {
    if (collectedSize != 0) {
        deliver({collected.get(), collectedSize});
        collectedSize = 0;
    }
}

void OutputBuffer::overwriteStart(ByteSpan bytes) {
    assert(collectedSize == 0);
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
