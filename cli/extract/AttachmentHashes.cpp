#include "cli/extract/AttachmentHashes.h"

#include <algorithm>
#include <utility>

namespace olmkit {

void AttachmentHashes::begin() {
    texts.clear();
    hash.reset();
    block.clear();
    isLong = false;
}

void AttachmentHashes::add(std::size_t attachment, std::span<const std::byte> bytes) {
    if (attachment >= texts.size()) {
        endAttachment();
        texts.resize(attachment + 1);
        hash = std::make_shared<Sha256>();
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
            thread.add(hash, std::exchange(block, {}));
            isLong = true;
        }
    }
}

void AttachmentHashes::finish() {
    endAttachment();
}

HashText AttachmentHashes::take(std::size_t attachment) {
    if (attachment < texts.size() && texts[attachment].valid()) {
        return std::move(texts[attachment]);
    }
    return readyHash(Sha256().end());
}

void AttachmentHashes::endAttachment() {
    if (hash == nullptr) {
        return;
    }
    if (isLong) {
        thread.add(hash, std::exchange(block, {}));
        texts.back() = thread.end(std::move(hash));
    } else {
        hash->add(block);
        texts.back() = readyHash(hash->end());
        block.clear();
    }
    hash.reset();
    isLong = false;
}

} // namespace olmkit
