#ifndef OLMKIT_TESTS_FAKEHOST_BYTES_H
#define OLMKIT_TESTS_FAKEHOST_BYTES_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace fakehost {

// A sequence of bytes that prints itself as hexadecimal pairs when a test fails.
struct Bytes : std::vector<uint8_t> {
    using std::vector<uint8_t>::vector;

    // Returns at most `count` bytes from `offset`: none past the end.
    [[nodiscard]] Bytes part(size_t offset, size_t count) const;
    // Returns the little-endian number at `offset`; throws std::out_of_range past the end.
    [[nodiscard]] uint32_t dword(size_t offset) const;
    [[nodiscard]] uint64_t qword(size_t offset) const;

    friend void PrintTo(const Bytes& bytes, std::ostream* out);
};

// Returns the bytes of pairs of digits, with blanks anywhere between them: hex("FF FE 68 00").
Bytes hex(std::string_view digits);

// Returns the bytes of a narrow text, without a terminator.
Bytes bytesOf(std::string_view text);

// Returns a text as UTF-16LE, without a byte order mark and without a terminator.
Bytes utf16(std::u16string_view text);

// Returns `count` bytes that differ from their neighbours, without a period of 1024.
Bytes patternBytes(size_t count);

// Returns both, one after the other.
Bytes operator+(Bytes first, const Bytes& second);

// Return the bytes of a little-endian number.
Bytes le16(uint16_t value);
Bytes le32(uint32_t value);
Bytes le64(uint64_t value);

} // namespace fakehost

#endif
