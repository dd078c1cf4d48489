#ifndef OLMKIT_TESTS_HOST_MESSAGE_MESSAGEBUILDER_H
#define OLMKIT_TESTS_HOST_MESSAGE_MESSAGEBUILDER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace olmhost::test {

using Bytes = std::vector<std::byte>; // as in CompoundFiles.h

// Returns the bytes of hexadecimal digits, with blanks anywhere between them.
Bytes hex(std::string_view digits);

// Returns text as UTF-16LE.
Bytes utf16(std::u16string_view text);

Bytes operator+(Bytes left, const Bytes& right);

// Returns a number with its low byte first.
Bytes number(std::uint64_t value, std::size_t size);

// One storage of a message: its streams, its entries and its storages.
struct Part {
    // An entry of the property stream.
    Part& add(std::uint32_t tag, std::uint64_t field);
    // The same, with a stream for the value.
    Part& add(std::uint32_t tag, const Bytes& value);

    std::map<std::u16string, Bytes> streams;
    std::map<std::u16string, Part> storages;
    Bytes entries;
    bool isMessage = false;
    bool hasProperties = true;
};

// Returns the name of a value's stream.
std::u16string streamName(std::uint32_t tag);

// Returns the file of a message.
Bytes fileOf(const Part& message);

} // namespace olmhost::test

#endif
