#ifndef OLMKIT_HOST_ARCHIVE_ENTRYINFO_H
#define OLMKIT_HOST_ARCHIVE_ENTRYINFO_H

#include <cstdint>

namespace olmhost {

// Compression methods of ZIP that are read.
enum : std::uint16_t { MethodStored = 0, MethodDeflated = 8 };

// What the directory of a ZIP archive says of one entry. It need not be true.
struct EntryInfo {
    std::uint64_t size = 0;           // bytes, uncompressed
    std::uint64_t compressedSize = 0; // bytes, as they lie in the archive
    std::uint64_t dataOffset = 0;     // of those, in the archive; 0 while not located
    std::uint32_t crc = 0;            // CRC-32 of the uncompressed bytes
    std::uint16_t method = 0;
    bool isEncrypted = false;
};

} // namespace olmhost

#endif
