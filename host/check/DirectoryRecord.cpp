#include "host/check/DirectoryRecord.h"

#include <algorithm>

#include "host/compound/DirectoryEntry.h"
#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::uint8_t storageType = static_cast<std::uint8_t>(EntryType::Storage);
constexpr std::uint8_t streamType = static_cast<std::uint8_t>(EntryType::Stream);
constexpr std::uint8_t rootType = static_cast<std::uint8_t>(EntryType::Root);

} // namespace

DirectoryRecord::DirectoryRecord(ByteSpan record) {
    FieldReader fields(record);
    for (char16_t& unit : units) {
        unit = static_cast<char16_t>(fields.number<std::uint16_t>());
    }
    nameSize = fields.number<std::uint16_t>();
    type = fields.number<std::uint8_t>();
    colour = fields.number<std::uint8_t>();
    left = fields.number<EntryId>();
    right = fields.number<EntryId>();
    child = fields.number<EntryId>();
    std::ranges::copy(fields.bytes(classId.size()), classId.begin());
    state = fields.number<std::uint32_t>();
    created = fields.number<std::uint64_t>();
    modified = fields.number<std::uint64_t>();
    firstSector = fields.number<SectorNumber>();
    size = fields.number<std::uint64_t>();
}

std::u16string_view DirectoryRecord::name() const {
    const std::size_t withEnd = std::min<std::size_t>(nameSize / sizeof(char16_t), units.size());
    return {units.data(), withEnd == 0 ? 0 : withEnd - 1};
}

bool DirectoryRecord::isStorage() const {
    return type == storageType || type == rootType;
}

bool DirectoryRecord::isStream() const {
    return type == streamType;
}

bool DirectoryRecord::isBlack() const {
    constexpr std::uint8_t black = 1;
    return colour == black;
}

} // namespace olmhost
