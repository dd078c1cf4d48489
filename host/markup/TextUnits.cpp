#include "host/markup/TextUnits.h"

#include <algorithm>
#include <cstring>

namespace olmhost {

namespace {

constexpr std::size_t blockSize = 16; // bytes
constexpr std::uint32_t replacement = 0xFFFD;

bool isAsciiBlock(const char* bytes) {
    std::uint64_t words[2];
    std::memcpy(words, bytes, sizeof words);
    return ((words[0] | words[1]) & 0x8080808080808080U) == 0;
}

// Copies ASCII bytes, at most `limit`, up to the first that isn't ASCII. Returns how many.
std::size_t copyAscii(const char* bytes, std::uint16_t* units, std::size_t limit) {
    std::size_t done = 0;
    for (; done + blockSize <= limit && isAsciiBlock(bytes + done); done += blockSize) {
        for (std::size_t i = 0; i < blockSize; ++i) {
            units[done + i] = static_cast<unsigned char>(bytes[done + i]);
        }
    }
    for (; done < limit && static_cast<signed char>(bytes[done]) >= 0; ++done) {
        units[done] = static_cast<unsigned char>(bytes[done]);
    }
    return done;
}

struct Character {
    std::uint32_t code;
    std::size_t size; // bytes
};

std::size_t sizeByLead(unsigned lead) {
    if (lead < 0xC0 || lead > 0xF7) {
        return 0;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// Returns the character at the front, which is not ASCII.
Character frontOf(std::string_view text) {
    const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t size = sizeByLead(byteAt(0));
    if (size == 0 || size > text.size()) {
        return {replacement, 1};
    }
    std::uint32_t code = byteAt(0) & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80) {
            return {replacement, 1};
        }
        code = code << 6 | (byteAt(i) & 0x3FU);
    }
    return code > 0x10FFFF ? Character{replacement, 1} : Character{code, size};
}

} // namespace

std::size_t TextUnits::read(std::string_view& text, std::uint16_t* units, std::size_t capacity) {
    std::size_t done = 0;
    if (half != 0 && capacity > 0) {
        units[done++] = half;
        half = 0;
    }
    while (done < capacity && !text.empty()) {
        const std::size_t plain =
            copyAscii(text.data(), units + done, std::min(text.size(), capacity - done));
        text.remove_prefix(plain);
        done += plain;
        if (done == capacity || text.empty()) {
            break;
        }
        const Character character = frontOf(text);
        text.remove_prefix(character.size);
        if (character.code <= 0xFFFF) {
            units[done++] = static_cast<std::uint16_t>(character.code);
            continue;
        }
        const std::uint32_t offset = character.code - 0x10000;
        const auto low = static_cast<std::uint16_t>(0xDC00 + (offset & 0x3FF));
        units[done++] = static_cast<std::uint16_t>(0xD800 + (offset >> 10));
        if (done == capacity) {
            half = low;
        } else {
            units[done++] = low;
        }
    }
    return done;
}

} // namespace olmhost
