#ifndef OLMKIT_HOST_MARKUP_BYTEARENA_H
#define OLMKIT_HOST_MARKUP_BYTEARENA_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace olmhost {

// Bytes that are added at the end and dropped together. Unlike a vector it doesn't clear new room.
// Pointers into it are valid until the next extend().
class ByteArena {
public:
    const char* data() const { return bytes.get(); }
    char* data() { return bytes.get(); }
    std::size_t size() const { return count; }

    // Returns room for `extra` more bytes at the end.
    char* extend(std::size_t extra) {
        if (extra > room - count) {
            grow(extra);
        }
        char* const begin = bytes.get() + count;
        count += extra;
        return begin;
    }

    void append(const char* from, std::size_t size) {
        char* const to = extend(size);
        // Most pieces are tiny: a resolved reference, a line end, a run of a few letters.
        if (size == 1) {
            *to = *from;
        } else if (size >= sizeof(std::uint64_t) && size <= 2 * sizeof(std::uint64_t)) {
            std::memcpy(to, from, sizeof(std::uint64_t));
            std::memcpy(to + size - sizeof(std::uint64_t), from + size - sizeof(std::uint64_t),
                        sizeof(std::uint64_t));
        } else {
            std::memcpy(to, from, size);
        }
    }

    void shrinkTo(std::size_t size) { count = size; }

    // Drops all bytes. Frees the memory when it is more than `maxKept` bytes.
    void release(std::size_t maxKept) {
        count = 0;
        if (room > maxKept) {
            bytes.reset();
            room = 0;
        }
    }

private:
    void grow(std::size_t extra) {
        const std::size_t larger = std::max({count + extra, 2 * room, std::size_t{4096}});
        auto moved = std::make_unique_for_overwrite<char[]>(larger);
        if (count != 0) {
            std::memcpy(moved.get(), bytes.get(), count);
        }
        bytes = std::move(moved);
        room = larger;
    }

    std::unique_ptr<char[]> bytes;
    std::size_t count = 0;
    std::size_t room = 0;
};

} // namespace olmhost

#endif
