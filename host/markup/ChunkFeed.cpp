#include "host/markup/ChunkFeed.h"

#include <algorithm>
#include <utility>

namespace olmhost {

namespace {

// Bytes.
constexpr std::uint32_t firstChunk = 2048;
constexpr std::uint32_t maxChunk = 32768;

} // namespace

void ChunkFeed::open(Handle& document) {
    stream = &document;
    total = 0;
}

void ChunkFeed::restart(std::uint64_t place, std::uint64_t placeholderSize) {
    base = place - placeholderSize;
    fed = placeholderSize;
    reported = 0;
    nextSize = firstChunk;
    isLast = false;
}

bool ChunkFeed::seekTo(std::uint64_t place) {
    return stream->seekTo(static_cast<std::int64_t>(place), Handle::seekFromStart) ==
           Handle::statusDone;
}

// A short read mostly means that the end is near. Asking at once lets expat know that this chunk is
// the last, which spares it the counting of lines.
std::uint32_t ChunkFeed::read(char* buffer) {
    std::uint32_t count = 0;
    isLast = stream->readBytes(buffer, nextSize, count) != Handle::statusDone || count == 0;
    if (!isLast && count < nextSize) {
        std::uint32_t more = 0;
        const std::int32_t status = stream->readBytes(buffer + count, nextSize - count, more);
        isLast = status != Handle::statusDone || more == 0;
        count += more;
    }
    fed += count;
    total += count;
    return count;
}

std::uint64_t ChunkFeed::pendingFrom(std::int64_t index) {
    if (index >= 0) {
        reported = static_cast<std::uint64_t>(index);
    }
    return fed - reported;
}

void ChunkFeed::grow(std::uint64_t pending, std::uint64_t maxSize) {
    const std::uint64_t doubled = std::min(2 * nextSize, maxChunk);
    nextSize = static_cast<std::uint32_t>(std::max(doubled, std::min(pending, maxSize)));
}

std::optional<std::string> ChunkFeed::readTo(std::string_view end, std::uint64_t place) {
    constexpr std::uint32_t blockSize = 128;
    if (!seekTo(place)) {
        return std::nullopt;
    }
    std::string bytes;
    std::size_t at = 0;
    for (;;) {
        for (; at + end.size() <= bytes.size(); at += end.size()) {
            if (bytes.compare(at, end.size(), end) == 0) {
                bytes.resize(at + end.size());
                return seekTo(place + bytes.size()) ? std::optional(std::move(bytes))
                                                    : std::nullopt;
            }
        }
        const std::size_t before = bytes.size();
        bytes.resize(before + blockSize);
        std::uint32_t count = 0;
        const std::int32_t status = stream->readBytes(bytes.data() + before, blockSize, count);
        bytes.resize(before + count);
        if (status != Handle::statusDone || count == 0) {
            return std::nullopt;
        }
    }
}

} // namespace olmhost
