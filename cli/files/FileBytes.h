#ifndef OLMKIT_CLI_FILES_FILEBYTES_H
#define OLMKIT_CLI_FILES_FILEBYTES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace olmkit {

// Writes or reads all of `bytes` at `offset` of an open file. Returns 0 or an errno value; EIO when
// the file ends before all bytes are read.
int writeAt(int file, std::uint64_t offset, std::span<const std::byte> bytes);
int readAt(int file, std::uint64_t offset, std::span<std::byte> bytes);

// Writes all of `text` at the end of a file that is open for appending. Returns 0 or an errno
// value.
int append(int file, std::string_view text);

} // namespace olmkit

#endif
