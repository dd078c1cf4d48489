#include "filter/core/CRC32Checksum.h"

#include <array>

namespace qor {

namespace {

// Returns the remainder of each byte value.
constexpr std::array<uint32_t, 256> makeRemainders() {
    std::array<uint32_t, 256> remainders{};
    for (uint32_t byte = 0; byte < remainders.size(); ++byte) {
        uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) {
            remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0xEDB88320U : 0U);
        }
        remainders[byte] = remainder;
    }
    return remainders;
}

constexpr std::array<uint32_t, 256> remainders = makeRemainders();

} // namespace

void CRC32Checksum::update(unsigned char byte) {
    remainder = (remainder >> 8) ^ remainders[(remainder ^ byte) & 0xFF];
}

String CRC32Checksum::getValue() const {
    return String(std::to_string(remainder).c_str());
}

} // namespace qor
