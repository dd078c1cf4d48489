#include "cli/files/TemporaryFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "cli/files/Uninterrupted.h"

namespace olmkit {

TemporaryFile::TemporaryFile(int directory, std::string name, int file, Interrupt::Guard guard)
    : directory(directory), fileName(std::move(name)), file(file), guard(std::move(guard)) {}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : directory(other.directory), fileName(std::exchange(other.fileName, {})),
      file(std::exchange(other.file, -1)), guard(std::move(other.guard)) {}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept {
    std::swap(directory, other.directory);
    std::swap(fileName, other.fileName);
    std::swap(file, other.file);
    std::swap(guard, other.guard);
    return *this;
}

TemporaryFile::~TemporaryFile() {
    close();
    if (!fileName.empty()) {
        uninterrupted([this] { return unlinkat(directory, fileName.c_str(), 0); });
    }
}

void TemporaryFile::setTime(const std::optional<timespec>& time) {
    if (time.has_value()) {
        const std::array<timespec, 2> times = {*time, *time}; // of access, of modification
        futimens(file, times.data());
    }
}

int TemporaryFile::close() {
    return file >= 0 ? closeFile(std::exchange(file, -1)) : 0;
}

int TemporaryFile::reopen() {
    file = uninterrupted(
        [this] { return openat(directory, fileName.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); });
    return file >= 0 ? 0 : errno;
}

} // namespace olmkit
