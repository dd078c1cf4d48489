#ifndef OLMKIT_CLI_FILES_FILEBYTES_H
#define OLMKIT_CLI_FILES_FILEBYTES_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace olmkit {

// All of the bytes to or from the place `offset` of an open file. 0 or an errno value; EIO when
// there are fewer to read.
int writeAt(int file, std::uint64_t offset, std::span<const std::byte> bytes);
int readAt(int file, std::uint64_t offset, std::span<std::byte> bytes);

} // namespace olmkit

#endif
