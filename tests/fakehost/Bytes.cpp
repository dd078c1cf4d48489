#include "tests/fakehost/Bytes.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <ostream>
#include <stdexcept>

namespace fakehost {

namespace {

Bytes littleEndian(uint64_t value, size_t size) {
    Bytes bytes;
    for (size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    return bytes;
}

uint64_t numberAt(const Bytes& bytes, size_t offset, size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) {
        value |= static_cast<uint64_t>(bytes.at(offset + i)) << (8 * i);
    }
    return value;
}

} // namespace

Bytes Bytes::part(size_t offset, size_t count) const {
    const size_t first = std::min(offset, size());
    const size_t last = std::min(size() - first, count) + first;
    return {begin() + static_cast<ptrdiff_t>(first), begin() + static_cast<ptrdiff_t>(last)};
}

uint32_t Bytes::dword(size_t offset) const {
    return static_cast<uint32_t>(numberAt(*this, offset, 4));
}

uint64_t Bytes::qword(size_t offset) const {
    return numberAt(*this, offset, 8);
}

void PrintTo(const Bytes& bytes, std::ostream* out) {
    *out << bytes.size() << " bytes:";
    const size_t shown = std::min<size_t>(bytes.size(), 256);
    for (size_t i = 0; i < shown; ++i) {
        char pair[4];
        std::snprintf(pair, sizeof pair, " %02X", bytes[i]);
        *out << pair;
    }
    if (shown < bytes.size()) {
        *out << " ...";
    }
}

Bytes hex(std::string_view digits) {
    Bytes bytes;
    int half = -1;
    for (const char digit : digits) {
        if (digit == ' ') {
            continue;
        }
        if (std::isxdigit(static_cast<unsigned char>(digit)) == 0) {
            throw std::invalid_argument("hex(): not a hexadecimal digit");
        }
        const int value = digit <= '9' ? digit - '0' : (digit & 0x5F) - 'A' + 10;
        if (half < 0) {
            half = value;
        } else {
            bytes.push_back(static_cast<uint8_t>(half << 4 | value));
            half = -1;
        }
    }
    if (half >= 0) {
        throw std::invalid_argument("hex(): an odd number of digits");
    }
    return bytes;
}

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes utf16(std::u16string_view text) {
    Bytes bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<uint8_t>(unit));
        bytes.push_back(static_cast<uint8_t>(unit >> 8));
    }
    return bytes;
}

Bytes patternBytes(size_t count) {
    Bytes bytes;
    for (size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<uint8_t>(i * 7 + i / 251));
    }
    return bytes;
}

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes le16(uint16_t value) {
    return littleEndian(value, 2);
}
Bytes le32(uint32_t value) {
    return littleEndian(value, 4);
}
Bytes le64(uint64_t value) {
    return littleEndian(value, 8);
}

} // namespace fakehost
