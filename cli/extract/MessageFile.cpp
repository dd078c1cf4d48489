#include "cli/extract/MessageFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "cli/extract/FileBytes.h"
#include "cli/extract/Sha256.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Bytes that are held in memory: most messages are never written before they are whole, and so need
// no second reading for their hash.
constexpr std::size_t heldMessageBytes = std::size_t{4} << 20;

constexpr std::size_t readBytes = std::size_t{256} << 10;

} // namespace

void MessageFile::begin() {
    discard();
}

bool MessageFile::append(std::span<const std::byte> bytes) {
    if (!isUsable()) {
        return false;
    }
    pending.insert(pending.end(), bytes.begin(), bytes.end());
    return pending.size() < heldMessageBytes || flush();
}

bool MessageFile::overwrite(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (!isUsable()) {
        return false;
    }
    if (offset > size() || bytes.size() > size() - offset) {
        error = EINVAL;
        return false;
    }
    if (offset < written) {
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), written - offset));
        if (!writeAt(offset, bytes.first(count))) {
            return false;
        }
        bytes = bytes.subspan(count);
        offset += count;
    }
    std::ranges::copy(bytes, pending.begin() + static_cast<std::ptrdiff_t>(offset - written));
    return true;
}

int MessageFile::finish(std::optional<TemporaryFile>& finished,
                        const std::optional<timespec>& time) {
    if (error == 0 && hash() && flush()) {
        if (time.has_value()) {
            const std::array<timespec, 2> times = {*time, *time};
            // A file system that takes no such time keeps its own.
            futimens(file->descriptor(), times.data());
        }
        error = file->close();
    }
    if (error != 0) {
        const int failure = error;
        discard();
        return failure;
    }
    finished = std::move(file);
    file.reset();
    return 0;
}

void MessageFile::discard() {
    file.reset();
    pending.clear();
    written = 0;
    error = 0;
    digest.clear();
}

bool MessageFile::isUsable() {
    if (error == 0 && Interrupt::isRequested()) {
        error = EINTR;
    }
    return error == 0;
}

bool MessageFile::flush() {
    if (!file.has_value()) {
        error = directory.createTemporary(file);
        if (error != 0) {
            return false;
        }
    }
    if (!writeAt(written, pending)) {
        return false;
    }
    written += pending.size();
    pending.clear();
    return true;
}

bool MessageFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    error = olmkit::writeAt(file->descriptor(), offset, bytes);
    return error == 0;
}

// The start of a message is overwritten last, so only a whole one can be hashed.
bool MessageFile::hash() {
    Sha256 sha256;
    std::vector<std::byte> buffer(written > 0 ? readBytes : 0);
    for (std::uint64_t offset = 0; offset < written;) {
        const auto part = std::span(buffer).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), written - offset)));
        error = readAt(file->descriptor(), offset, part);
        if (error != 0) {
            return false;
        }
        sha256.add(part);
        offset += part.size();
    }
    sha256.add(pending);
    digest = sha256.end();
    error = digest.empty() ? EIO : 0;
    return error == 0;
}

} // namespace olmkit
