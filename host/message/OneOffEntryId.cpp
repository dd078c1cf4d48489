#include "host/message/OneOffEntryId.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::array<std::uint8_t, 16> provider = {0x81, 0x2B, 0x1F, 0xA4, 0xBE, 0xA3, 0x10, 0x19,
                                                   0x9D, 0x6E, 0x00, 0xDD, 0x01, 0x0F, 0x54, 0x02};
constexpr std::uint16_t textIsUtf16 = 0x8000;

// Reads a text and its terminator.
std::u16string takeText(FieldReader& fields) {
    std::u16string text;
    while (fields.isGood()) {
        const auto unit = fields.number<std::uint16_t>();
        if (unit == 0) {
            break;
        }
        text += static_cast<char16_t>(unit);
    }
    return text;
}

} // namespace

std::optional<OneOffEntryId> decodeOneOffEntryId(std::span<const std::byte> bytes) {
    FieldReader fields(bytes);
    fields.number<std::uint32_t>(); // flags
    const bool isOneOff =
        std::ranges::equal(fields.bytes(provider.size()), provider, {},
                           [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
    fields.number<std::uint16_t>(); // version
    const auto flags = fields.number<std::uint16_t>();
    if (!isOneOff || (flags & textIsUtf16) == 0) {
        return std::nullopt;
    }
    OneOffEntryId found;
    found.displayName = takeText(fields);
    found.addressType = takeText(fields);
    found.address = takeText(fields);
    return fields.isGood() ? std::optional(found) : std::nullopt;
}

} // namespace olmhost
