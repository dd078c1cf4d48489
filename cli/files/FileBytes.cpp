#include "cli/files/FileBytes.h"

#include <unistd.h>

#include <cerrno>

#include "cli/files/Uninterrupted.h"

namespace olmkit {

namespace {

// Calls `step` for the remaining bytes until there are none.
template <typename Byte, typename Step>
int repeat(std::uint64_t offset, std::span<Byte> bytes, const Step& step) {
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([&] { return step(bytes, static_cast<off_t>(offset)); });
        if (count <= 0) {
            return count < 0 ? errno : EIO;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return 0;
}

} // namespace

int writeAt(int file, std::uint64_t offset, std::span<const std::byte> bytes) {
    return repeat(offset, bytes, [file](std::span<const std::byte> rest, off_t place) {
        return pwrite(file, rest.data(), rest.size(), place);
    });
}

int readAt(int file, std::uint64_t offset, std::span<std::byte> bytes) {
    return repeat(offset, bytes, [file](std::span<std::byte> rest, off_t place) {
        return pread(file, rest.data(), rest.size(), place);
    });
}

int append(int file, std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return repeat(0, bytes, [file](std::span<const std::byte> rest, off_t) {
        return write(file, rest.data(), rest.size());
    });
}

} // namespace olmkit
