#include "host/check/RandomAccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace olmhost {

int MemoryAccess::read(std::uint64_t offset, std::span<std::byte> place) {
    std::memcpy(place.data(), bytes.data() + offset, place.size());
    return 0;
}

FileAccess::~FileAccess() {
    if (file >= 0) {
        ::close(file);
    }
}

int FileAccess::open(const std::string& path) {
    // Without O_NONBLOCK the open of a named pipe would wait for a writer.
    file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // NOLINT(*-vararg)
    struct stat facts {};
    if (file < 0 || ::fstat(file, &facts) != 0) {
        return errno;
    }
    if (S_ISDIR(facts.st_mode)) {
        return EISDIR;
    }
    if (!S_ISREG(facts.st_mode)) {
        return ESPIPE;
    }
    fileSize = static_cast<std::uint64_t>(facts.st_size);
    return 0;
}

int FileAccess::read(std::uint64_t offset, std::span<std::byte> place) {
    while (!place.empty()) {
        const ssize_t count = ::pread(file, place.data(), place.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count < 0 ? errno : EIO;
        }
        place = place.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return 0;
}

} // namespace olmhost
