#include "host/message/MessageSpool.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>

namespace olmhost {

MessageSpool::~MessageSpool() {
    if (mapped != nullptr) {
        munmap(mapped, fileSize);
    }
    if (file >= 0) {
        close(file);
    }
}

bool MessageSpool::append(std::span<const std::byte> bytes) {
    if (error == 0 && file < 0) {
        if (held.size() + bytes.size() <= heldBytes) {
            held.insert(held.end(), bytes.begin(), bytes.end());
            return true;
        }
        if (openFile() && writeAt(0, held)) {
            fileSize = held.size();
            held = {};
        }
    }
    if (error != 0 || !writeAt(fileSize, bytes)) {
        return false;
    }
    fileSize += bytes.size();
    return true;
}

bool MessageSpool::overwrite(std::uint64_t offset, std::span<const std::byte> bytes) {
    const std::uint64_t size = file < 0 ? held.size() : fileSize;
    if (error == 0 && (offset > size || bytes.size() > size - offset)) {
        error = EINVAL;
    }
    if (error != 0) {
        return false;
    }
    if (file >= 0) {
        return writeAt(offset, bytes);
    }
    std::ranges::copy(bytes, held.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

std::span<const std::byte> MessageSpool::contents() {
    if (error != 0) {
        return {};
    }
    if (file < 0) {
        return held;
    }
    if (mapped == nullptr) {
        void* place = mmap(nullptr, fileSize, PROT_READ, MAP_PRIVATE, file, 0);
        if (place == MAP_FAILED) {
            error = errno;
            return {};
        }
        mapped = place;
    }
    return {static_cast<const std::byte*>(mapped), fileSize};
}

bool MessageSpool::openFile() {
    const char* folder = std::getenv("TMPDIR");
    std::string name = folder == nullptr || *folder == '\0' ? "/tmp" : folder;
    name += "/olmkit-XXXXXX";
    file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        error = errno;
        return false;
    }
    unlink(name.c_str());
    return true;
}

bool MessageSpool::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            error = count < 0 ? errno : EIO;
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return true;
}

} // namespace olmhost
