#ifndef OLMKIT_HOST_ARCHIVE_ENTRYINFO_H
#define OLMKIT_HOST_ARCHIVE_ENTRYINFO_H

#include <cstdint>

namespace olmhost {

// Compression methods that are supported (APPNOTE 4.4.5).
enum : std::uint16_t { MethodStored = 0, MethodDeflated = 8 };

// The data of one entry in the directory of a ZIP archive (APPNOTE 4.3.12). They need not be true.
struct EntryInfo {
    std::uint64_t size = 0;           // bytes, uncompressed
    std::uint64_t compressedSize = 0; // bytes in the archive
    std::uint64_t dataOffset = 0;     // of the data, in the archive; 0 while unknown
    std::uint32_t crc = 0;            // CRC-32 of the uncompressed bytes
    std::uint16_t method = 0;
    bool isEncrypted = false;
};

} // namespace olmhost

#endif
