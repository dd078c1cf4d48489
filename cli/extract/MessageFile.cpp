#include "cli/extract/MessageFile.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "cli/files/FileBytes.h"
#include "cli/files/Sha256.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Most messages are held in memory until they are complete, and so need not be read back for their
// hash.
constexpr std::size_t maxHeldMessageBytes = std::size_t{4} << 20;

} // namespace

void MessageFile::begin() {
    discard();
}

bool MessageFile::append(std::span<const std::byte> bytes) {
    if (!isUsable()) {
        return false;
    }
    pending.insert(pending.end(), bytes.begin(), bytes.end());
    return pending.size() < maxHeldMessageBytes || flush();
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

int MessageFile::finish(std::optional<TemporaryFile>& finished, HashText& sha256,
                        const std::optional<timespec>& time) {
    if (error == 0 && store() && hash(sha256)) {
        file->setTime(time);
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
}

bool MessageFile::isUsable() {
    if (error == 0 && Interrupt::isRequested()) {
        error = EINTR;
    }
    return error == 0;
}

bool MessageFile::flush() {
    if (!store()) {
        return false;
    }
    written += pending.size();
    pending.clear();
    return true;
}

// Writes the pending bytes and keeps them in memory.
bool MessageFile::store() {
    if (!file.has_value()) {
        error = directory.createTemporary(file);
        if (error != 0) {
            return false;
        }
    }
    return writeAt(written, pending);
}

bool MessageFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    error = olmkit::writeAt(file->descriptor(), offset, bytes);
    return error == 0;
}

// The start of a message is overwritten last, so only a complete one can be hashed.
bool MessageFile::hash(HashText& sha256) {
    const auto hash = std::make_shared<Sha256>();
    if (size() < HashThread::blockSize) {
        hash->add(pending);
        sha256 = readyHash(hash->end());
        return true;
    }
    for (std::uint64_t offset = 0; offset < written;) {
        HashThread::Block block = hashThread.emptyBlock();
        block.resize(static_cast<std::size_t>(
            std::min<std::uint64_t>(HashThread::blockSize, written - offset)));
        error = readAt(file->descriptor(), offset, block);
        if (error != 0) {
            return false;
        }
        offset += block.size();
        hashThread.add(hash, std::move(block));
    }
    written += pending.size();
    hashThread.add(hash, std::move(pending));
    pending = hashThread.emptyBlock();
    sha256 = hashThread.end(hash);
    return true;
}

} // namespace olmkit
