#include "host/archive/LocalHeader.h"

#include <array>

#include "host/archive/NameText.h"

namespace olmhost {

namespace {

constexpr std::size_t headerSize = 30;
constexpr std::uint32_t signature = 0x04034B50;
constexpr std::uint64_t in64 = 0xFFFFFFFF; // the size is in the ZIP64 field (APPNOTE 4.4.8)
constexpr std::uint16_t descriptorFlag = 8;
constexpr std::uint16_t zip64Field = 0x0001;
constexpr std::uint16_t unicodePathField = 0x7075;
constexpr std::size_t unicodePathStart = 5; // a version, and the checksum of the name

// Returns the little-endian number at `offset`; 0 after the end.
std::uint64_t numberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t place = size; place > 0 && offset + size <= bytes.size(); --place) {
        number = number << 8 | static_cast<std::uint8_t>(bytes[offset + place - 1]);
    }
    return number;
}

} // namespace

std::optional<LocalHeader> LocalHeader::read(ArchiveBytes& bytes, std::uint64_t offset) {
    std::array<char, headerSize> start;
    if (bytes.read(offset, start.data(), start.size()) < start.size()) {
        return std::nullopt;
    }
    const std::string_view fields(start.data(), start.size());
    LocalHeader header;
    header.hasSignature = numberAt(fields, 0, 4) == signature;
    header.hasDescriptor = (numberAt(fields, 6, 2) & descriptorFlag) != 0;
    header.info.method = static_cast<std::uint16_t>(numberAt(fields, 8, 2));
    header.info.crc = static_cast<std::uint32_t>(numberAt(fields, 14, 4));
    header.info.compressedSize = numberAt(fields, 18, 4);
    header.info.size = numberAt(fields, 22, 4);
    header.name.resize(numberAt(fields, 26, 2));
    std::string extra(numberAt(fields, 28, 2), '\0');
    offset += headerSize;
    if (bytes.read(offset, header.name.data(), header.name.size()) < header.name.size()) {
        return std::nullopt;
    }
    offset += header.name.size();
    if (bytes.read(offset, extra.data(), extra.size()) < extra.size()) {
        return std::nullopt;
    }
    header.readExtra(extra);
    header.info.dataOffset = offset + extra.size();
    return header;
}

void LocalHeader::readExtra(std::string_view extra) {
    while (extra.size() >= 4) {
        const std::uint64_t id = numberAt(extra, 0, 2);
        std::string_view field = extra.substr(4, numberAt(extra, 2, 2));
        extra.remove_prefix(4 + field.size());
        if (id == unicodePathField && field.size() > unicodePathStart) {
            unicodeName = field.substr(unicodePathStart);
        } else if (id == zip64Field) {
            for (std::uint64_t* size : {&info.size, &info.compressedSize}) {
                if (*size == in64 && field.size() >= 8) {
                    *size = numberAt(field, 0, 8);
                    field.remove_prefix(8);
                }
            }
        }
    }
}

std::string LocalHeader::differenceFrom(std::string_view entryName, const EntryInfo& entry) const {
    if (!hasSignature) {
        return "its local header has no signature";
    }
    std::string text;
    const auto compare = [&text](bool isEqual, const std::string& what) {
        if (!isEqual) {
            text += (text.empty() ? "its local header differs from the directory: " : ", ") + what;
        }
    };
    const auto compareSize = [&](std::uint64_t here, std::uint64_t there, const std::string& what) {
        compare(here == there || (hasDescriptor && here == 0), what + std::to_string(here));
    };
    // The directory's names end at a 0 byte.
    const std::string_view ownName = std::string_view(name).substr(0, name.find('\0'));
    compare(entryName == ownName || (!unicodeName.empty() && entryName == unicodeName),
            isUtf8(ownName) ? std::string("name \"").append(ownName).append("\"") : "name");
    compare(info.method == entry.method, "compression method " + std::to_string(info.method));
    compareSize(info.size, entry.size, "size ");
    compareSize(info.compressedSize, entry.compressedSize, "compressed size ");
    compare(info.crc == entry.crc || (hasDescriptor && info.crc == 0), "checksum");
    return text;
}

} // namespace olmhost
