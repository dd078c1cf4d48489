#ifndef OLMKIT_HOST_COMPOUND_FIELDREADER_H
#define OLMKIT_HOST_COMPOUND_FIELDREADER_H

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace olmhost {

// Takes a record apart field by field, numbers with their low byte first.
//
// Bytes that are not there read as nothing: a number as 0, a piece as an empty one. From then on
// isGood() is false, so a caller may read a whole record and ask once.
class FieldReader {
public:
    // `bytes` is borrowed.
    explicit FieldReader(std::span<const std::byte> bytes) : rest(bytes) {}

    // The type is the width of the field.
    template <std::unsigned_integral Number> Number number() {
        Number value = 0;
        const std::span<const std::byte> field = bytes(sizeof(Number));
        for (std::size_t i = 0; i < field.size(); ++i) {
            value |= static_cast<Number>(static_cast<Number>(field[i]) << (8 * i));
        }
        return value;
    }

    // The next `count` bytes.
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

    // Whether all that was asked for was there.
    bool isGood() const { return good; }

private:
    std::span<const std::byte> rest;
    bool good = true;
};

} // namespace olmhost

#endif
