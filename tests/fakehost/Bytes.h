#ifndef OLMKIT_TESTS_FAKEHOST_BYTES_H
#define OLMKIT_TESTS_FAKEHOST_BYTES_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace fakehost {

// A run of bytes that prints itself as hexadecimal pairs when a test fails.
struct Bytes : std::vector<uint8_t> {
    using std::vector<uint8_t>::vector;

    // `count` bytes from `offset`; what lies past the end is left out.
    [[nodiscard]] Bytes part(size_t offset, size_t count) const;
    // Little-endian numbers at `offset`; throws std::out_of_range past the end.
    [[nodiscard]] uint32_t dword(size_t offset) const;
    [[nodiscard]] uint64_t qword(size_t offset) const;

    friend void PrintTo(const Bytes& bytes, std::ostream* out);
};

// hex("FF FE 68 00"): pairs of digits, blanks between them where they help.
Bytes hex(std::string_view digits);

// The bytes of a narrow text, without its terminator.
Bytes bytesOf(std::string_view text);

// The units of a text as UTF-16LE bytes, with no mark and no terminator.
Bytes utf16(std::u16string_view text);

// One behind the other.
Bytes operator+(Bytes first, const Bytes& second);

// The bytes of little-endian numbers.
Bytes le16(uint16_t value);
Bytes le32(uint32_t value);
Bytes le64(uint64_t value);

} // namespace fakehost

#endif
