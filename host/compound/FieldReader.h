#ifndef OLMKIT_HOST_COMPOUND_FIELDREADER_H
#define OLMKIT_HOST_COMPOUND_FIELDREADER_H

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace olmhost {

// Reads a record field by field, numbers with their low byte first.
//
// A field after the end reads as a number 0 or as no bytes. From then on isGood() is false, so a
// caller may read a whole record and check once.
class FieldReader {
public:
    // `bytes` is borrowed.
    explicit FieldReader(std::span<const std::byte> bytes) : rest(bytes) {}

    // Reads a number. The type is the width of the field.
    template <std::unsigned_integral Number> Number number() {
        Number value = 0;
        const std::span<const std::byte> field = bytes(sizeof(Number));
        for (std::size_t i = 0; i < field.size(); ++i) {
            value |= static_cast<Number>(static_cast<Number>(field[i]) << (8 * i));
        }
        return value;
    }

    // Reads the next `count` bytes.
    std::span<const std::byte> bytes(std::size_t count) {
        if (count > rest.size()) {
            good = false;
            rest = {};
            return {};
        }
        const std::span<const std::byte> piece = rest.first(count);
        rest = rest.subspan(count);
        return piece;
    }

    std::size_t remaining() const { return rest.size(); }

    // Returns whether all fields so far were there.
    bool isGood() const { return good; }

private:
    std::span<const std::byte> rest;
    bool good = true;
};

} // namespace olmhost

#endif
