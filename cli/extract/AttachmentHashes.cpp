#include "cli/extract/AttachmentHashes.h"

#include <algorithm>
#include <utility>

namespace olmkit {

void AttachmentHashes::begin() {
    thread.finish();
    hashes.clear();
    block.clear();
    isLong = false;
}

void AttachmentHashes::add(std::size_t attachment, std::span<const std::byte> bytes) {
    if (attachment >= hashes.size()) {
        endAttachment();
        hashes.resize(attachment + 1);
    }
    while (!bytes.empty()) {
        if (block.capacity() < HashThread::blockSize) {
            block = thread.emptyBlock();
        }
        const std::size_t count = std::min(bytes.size(), HashThread::blockSize - block.size());
        block.insert(block.end(), bytes.begin(),
                     bytes.begin() + static_cast<std::ptrdiff_t>(count));
        bytes = bytes.subspan(count);
        if (block.size() == HashThread::blockSize) {
            thread.add(hashes.back(), std::exchange(block, {}));
            isLong = true;
        }
    }
}

void AttachmentHashes::finish() {
    endAttachment();
    thread.finish();
}

std::string AttachmentHashes::sha256(std::size_t attachment) {
    if (attachment >= hashes.size()) {
        hashes.resize(attachment + 1);
    }
    return hashes[attachment].end();
}

// Hashes what is left of the last attachment.
void AttachmentHashes::endAttachment() {
    if (!block.empty()) {
        if (isLong) {
            thread.add(hashes.back(), std::exchange(block, {}));
        } else {
            hashes.back().add(block);
            block.clear();
        }
    }
    isLong = false;
}

} // namespace olmkit
