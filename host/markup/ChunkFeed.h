#ifndef OLMKIT_HOST_MARKUP_CHUNKFEED_H
#define OLMKIT_HOST_MARKUP_CHUNKFEED_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/stream/Handle.h"

namespace olmhost {

// Reads a document in chunks for expat, and maps expat's positions to the document's.
//
// Chunks are small at first, since often one item is all that is wanted, and double.
class ChunkFeed {
public:
    // Begins with a document, which is borrowed until close(). Reads nothing yet.
    void open(Handle& document);
    void close() { stream = nullptr; }

    // The document. REQUIRES: open() was called
    Handle& document() const { return *stream; }

    // The next chunk begins at byte `place` of the document; before it expat got `placeholderSize`
    // bytes that are not in the document. Does not move the stream: see seekTo().
    void restart(std::uint64_t place, std::uint64_t placeholderSize);

    // Moves the stream to byte `place`. Returns false when it can't be moved.
    bool seekTo(std::uint64_t place);

    std::uint32_t chunkSize() const { return nextSize; }

    // Reads the next chunk into `buffer`, which has room for chunkSize() bytes. Returns its size.
    std::uint32_t read(char* buffer);

    // Whether the chunk read last ends the document.
    bool isAtEnd() const { return isLast; }

    // Bytes read since open(), repeated ones counted again.
    std::uint64_t totalRead() const { return total; }

    // The position in the document of the byte that expat counts as `index`.
    std::uint64_t placeOf(std::int64_t index) const {
        return base + static_cast<std::uint64_t>(index);
    }

    // Returns how many bytes expat holds that it can't report yet, when it has reported all before
    // `index`. A negative index means that it has reported nothing since the last call.
    std::uint64_t pendingFrom(std::int64_t index);

    // Chooses the size of the next chunk, at most `maxSize` bytes unless chunks are larger already.
    void grow(std::uint64_t pending, std::uint64_t maxSize);

    // Reads the document's bytes from `place` up to and including the next `end`, which begins at
    // a multiple of its size from there. The stream is after them then. Returns none when it can't
    // be read that far.
    std::optional<std::string> readTo(std::string_view end, std::uint64_t place);

private:
    Handle* stream = nullptr;   // borrowed
    std::uint64_t base = 0;     // place of expat's byte 0; wraps below 0 by the placeholders
    std::uint64_t fed = 0;      // bytes that expat got, placeholders included
    std::uint64_t reported = 0; // of these, how many precede what expat waits to complete
    std::uint64_t total = 0;    // bytes read since open()
    std::uint32_t nextSize = 0; // bytes
    bool isLast = false;
};

} // namespace olmhost

#endif
