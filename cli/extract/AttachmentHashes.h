#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "cli/files/HashThread.h"
#include "cli/files/Sha256.h"

namespace olmkit {

// The SHA-256 of each attachment of a message, message after message: begin(), bytes, finish().
// Attachments of a block and more are hashed beside the caller's thread.
class AttachmentHashes {
public:
    // `thread` is borrowed.
    explicit AttachmentHashes(HashThread& thread) : thread(thread) {}

    void begin();

    // The next bytes of an attachment; attachments come in ascending order, some perhaps without
    // bytes.
    void add(std::size_t attachment, std::span<const std::byte> bytes);

    // No bytes are to come any more.
    void finish();

    // Once it is finished; that of no bytes for an attachment without any. Call it once for each.
    HashText take(std::size_t attachment);

private:
    void endAttachment();

    HashThread& thread;
    std::vector<HashText> texts;  // of the attachments that had bytes and have ended
    std::shared_ptr<Sha256> hash; // of the one at hand; null when there is none
    HashThread::Block block;      // its bytes that are not hashed
    bool isLong = false;          // blocks of it were given away
};

} // namespace olmkit

#endif
