#include "host/archive/EntryData.h"

#include <array>
#include <system_error>

#include <zlib.h>

namespace olmhost {

namespace {

constexpr const char* wrongChecksum = "its checksum is wrong";
constexpr std::size_t blockSize = std::size_t{16} << 10; // bytes read at once by checkRest()

} // namespace

void EntryData::assign(std::uint64_t newIndex, const EntryInfo& newInfo, std::uint64_t newEnd) {
    index = newIndex;
    info = newInfo;
    dataEnd = newEnd;
    checkedTo = 0;
    checksum = 0;
    isReadFailed = false;
    faultText.clear();
    if (info.size == 0 && info.crc != 0) {
        report(FaultKind::Checksum, wrongChecksum);
    }
}

void EntryData::check(std::uint64_t position, const void* data, std::size_t size) {
    if (position > checkedTo || checkedTo - position >= size) {
        return;
    }
    const auto known = static_cast<std::size_t>(checkedTo - position);
    checksum = static_cast<std::uint32_t>(
        crc32_z(checksum, static_cast<const Bytef*>(data) + known, size - known));
    checkedTo += size - known;
    if (checkedTo == info.size && checksum != info.crc) {
        report(FaultKind::Checksum, wrongChecksum);
    }
}

void EntryData::checkRest() {
    std::array<std::byte, blockSize> block;
    while (checkedTo < end() && read(checkedTo, block.data(), block.size()) > 0) {
    }
}

void EntryData::report(FaultKind kind, const std::string& text) {
    if (faultText.find(text) == std::string::npos) {
        faultText += (faultText.empty() ? "" : "; ") + text;
    }
    file.addFault(kind, index, text);
}

void EntryData::endEarly(std::uint64_t position) {
    dataEnd = position;
    isReadFailed = bytes.error() != 0;
    if (isReadFailed) {
        report(FaultKind::ReadFailed,
               "can't be read: " + std::generic_category().message(bytes.error()));
    } else {
        report(FaultKind::Damaged, "its data end after " + std::to_string(position) + " of " +
                                       std::to_string(info.size) + " bytes");
    }
}

} // namespace olmhost
