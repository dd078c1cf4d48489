#include "host/archive/StoredEntry.h"

#include <algorithm>

namespace olmhost {

StoredEntry::StoredEntry(ArchiveBytes& bytes, ArchiveFile& file, std::uint64_t index,
                         const EntryInfo& info)
    : EntryData(bytes, file) {
    const std::uint64_t inFile =
        info.dataOffset < bytes.size() ? bytes.size() - info.dataOffset : 0;
    assign(index, info, std::min(info.size, std::min(info.compressedSize, inFile)));
    if (end() < info.size) {
        endEarly(end());
    } else if (info.compressedSize != info.size) {
        report(FaultKind::Damaged, "its data continue after its declared size of " +
                                       std::to_string(info.size) + " bytes");
    }
}

std::size_t StoredEntry::read(std::uint64_t position, void* buffer, std::size_t size) {
    if (position >= end()) {
        return 0;
    }
    const auto available =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, end() - position));
    const std::size_t count = bytes.read(info.dataOffset + position, buffer, available);
    if (count < available) {
        endEarly(position + count);
    }
    check(position, buffer, count);
    return count;
}

} // namespace olmhost
