#ifndef OLMKIT_HOST_COMPOUND_FIELDWRITER_H
#define OLMKIT_HOST_COMPOUND_FIELDWRITER_H

#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace olmhost {

// Writes a record field by field, numbers with their low byte first.
class FieldWriter {
public:
    // `record` is borrowed.
    explicit FieldWriter(std::span<std::byte> record) : rest(record) {}

    // Writes a number. The type of the argument is the width of the field: name it in the call.
    template <std::unsigned_integral Number> void number(Number value) {
        assert(rest.size() >= sizeof(Number));
        for (std::size_t i = 0; i < sizeof(Number); ++i) {
            rest[i] = static_cast<std::byte>(value >> (8 * i));
        }
        rest = rest.subspan(sizeof(Number));
    }

    void bytes(std::span<const std::byte> value) {
        assert(rest.size() >= value.size());
        std::memcpy(rest.data(), value.data(), value.size());
        rest = rest.subspan(value.size());
    }

    void zeros(std::size_t count) {
        assert(rest.size() >= count);
        std::memset(rest.data(), 0, count);
        rest = rest.subspan(count);
    }

    // Returns the bytes of the record that are not written yet.
    std::size_t remaining() const { return rest.size(); }

private:
    std::span<std::byte> rest;
};

} // namespace olmhost

#endif
