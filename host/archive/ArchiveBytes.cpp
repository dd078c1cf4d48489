#include "host/archive/ArchiveBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace olmhost {

namespace {

// Bytes read at once.
constexpr std::size_t minLoad = std::size_t{8} << 10;
constexpr std::size_t maxLoad = std::size_t{64} << 10;

// Skipping no more bytes than this, over a header, still counts as sequential.
constexpr std::uint64_t maxGap = std::uint64_t{4} << 10;

// Returns why the file can't be an archive, judged without reading it.
OpenFailure judge(const struct stat& state) {
    if (S_ISDIR(state.st_mode)) {
        return {OpenFailureKind::NotAnArchive, "is a directory"};
    }
    if (!S_ISREG(state.st_mode)) {
        return {OpenFailureKind::NotAnArchive, "is a special file, not an archive"};
    }
    if (state.st_size == 0) {
        return {OpenFailureKind::NotAnArchive, "is empty"};
    }
    return {};
}

} // namespace

std::unique_ptr<ArchiveBytes> ArchiveBytes::open(const std::string& path, OpenFailure& failure) {
    struct stat state = {};
    if (::stat(path.c_str(), &state) != 0) {
        failure = OpenFailure::unreadable(errno);
        return nullptr;
    }
    failure = judge(state);
    if (failure.kind != OpenFailureKind::None) {
        return nullptr;
    }
    // Non-blocking, in case a pipe has replaced the file in the meantime.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0 || ::fstat(descriptor, &state) != 0) {
        failure = OpenFailure::unreadable(errno);
    } else {
        failure = judge(state);
    }
    if (failure.kind != OpenFailureKind::None) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        return nullptr;
    }
    return std::make_unique<ArchiveBytes>(descriptor, static_cast<std::uint64_t>(state.st_size));
}

std::unique_ptr<ArchiveBytes> ArchiveBytes::openAgain(OpenFailure& failure) const {
    const int duplicate = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (duplicate < 0) {
        failure = OpenFailure::unreadable(errno);
        return nullptr;
    }
    return std::make_unique<ArchiveBytes>(duplicate, fileSize);
}

ArchiveBytes::ArchiveBytes(int descriptor, std::uint64_t size)
    : descriptor(descriptor), fileSize(size), window(new std::byte[maxLoad]), loadSize(minLoad) {}

ArchiveBytes::~ArchiveBytes() {
    ::close(descriptor);
}

std::span<const std::byte> ArchiveBytes::at(std::uint64_t offset) {
    const std::uint64_t windowEnd = windowOffset + windowLength;
    if (offset < windowOffset || offset >= windowEnd) {
        const bool isSequential = offset >= windowEnd && offset - windowEnd <= maxGap;
        loadSize = isSequential ? std::min(loadSize * 2, maxLoad) : minLoad;
        windowOffset = offset;
        windowLength = readFile(offset, window.get(), loadSize);
    }
    const auto skipped = static_cast<std::size_t>(offset - windowOffset);
    if (skipped < windowLength) {
        lastError = 0; // an error may have ended the window, which has bytes all the same
    }
    return {window.get() + skipped, windowLength - skipped};
}

std::size_t ArchiveBytes::read(std::uint64_t offset, void* buffer, std::size_t size) {
    auto* target = static_cast<std::byte*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const std::size_t left = size - done;
        const bool inWindow = offset >= windowOffset && offset < windowOffset + windowLength;
        if (!inWindow && left >= maxLoad) {
            return done + readFile(offset, target + done, left);
        }
        const auto bytes = at(offset);
        if (bytes.empty()) {
            break;
        }
        const std::size_t count = std::min(left, bytes.size());
        std::memcpy(target + done, bytes.data(), count);
        done += count;
        offset += count;
    }
    return done;
}

std::size_t ArchiveBytes::readFile(std::uint64_t offset, void* buffer, std::size_t size) {
    lastError = 0;
    std::size_t done = 0;
    if (offset >= fileSize) {
        return 0;
    }
    while (done < size) {
        const ssize_t count = ::pread(descriptor, static_cast<std::byte*>(buffer) + done,
                                      size - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            lastError = errno;
        }
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace olmhost
