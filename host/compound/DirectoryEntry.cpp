#include "host/compound/DirectoryEntry.h"

#include <algorithm>

#include "host/compound/FieldWriter.h"

namespace olmhost {

namespace {

constexpr std::size_t timeStampsSize = 16; // bytes: made, modified

constexpr std::uint8_t red = 0;
constexpr std::uint8_t black = 1;

} // namespace

void DirectoryEntry::setName(std::u16string_view name) {
    assert(name.size() <= longestName);
    nameUnits.fill(0);
    std::copy(name.begin(), name.end(), nameUnits.begin());
    nameSize = static_cast<std::uint8_t>(name.size());
}

std::array<std::byte, directoryEntrySize> DirectoryEntry::encoded(const ClassId& classId) const {
    std::array<std::byte, directoryEntrySize> place;
    FieldWriter fields(place);
    const bool isUsed = type != EntryType::Unused;
    const bool isStorage = type == EntryType::Storage;

    for (const char16_t unit : nameUnits) {
        fields.number(static_cast<std::uint16_t>(isUsed ? unit : 0));
    }
    fields.number(std::uint16_t{0});
    fields.number(static_cast<std::uint16_t>(isUsed ? 2 * (nameSize + 1) : 0));
    fields.number(static_cast<std::uint8_t>(type));
    fields.number(isUsed && !isRed ? black : red);
    fields.number(isUsed ? left : noEntry);
    fields.number(isUsed ? right : noEntry);
    fields.number(isUsed ? child : noEntry);
    fields.bytes(classId);
    fields.number(std::uint32_t{0}); // state bits
    fields.zeros(timeStampsSize);
    // A storage has no bytes of its own, and its fields are 0, not the end of a chain.
    fields.number(isUsed && !isStorage ? firstSector : SectorNumber{0});
    fields.number(std::uint64_t{isUsed && !isStorage ? size : 0});
    assert(fields.remaining() == 0);
    return place;
}

} // namespace olmhost
