#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "cli/files/HashThread.h"
#include "cli/files/Sha256.h"

namespace olmkit {

// Computes the SHA-256 of each attachment of a message. Attachments of HashThread::blockSize and
// more are hashed on another thread.
//
// Order of calls, for each message: begin(), add() for all bytes, finish(), take().
class AttachmentHashes {
public:
    // `thread` is borrowed.
    explicit AttachmentHashes(HashThread& thread) : thread(thread) {}

    void begin();

    // Adds the next bytes of an attachment, by its number from 0. Attachments come in ascending
    // order; those without bytes are skipped.
    void add(std::size_t attachment, std::span<const std::byte> bytes);

    // Ends the last attachment.
    void finish();

    // Returns the hash of an attachment, also of one without bytes. Call it once for each.
    HashText take(std::size_t attachment);

private:
    void endAttachment();

    HashThread& thread;
    std::vector<HashText> texts;  // by number; invalid for attachments without bytes
    std::shared_ptr<Sha256> hash; // of the current attachment; null between attachments
    HashThread::Block block;      // its bytes that are not hashed yet
    bool isLong = false;          // the thread got blocks of it
};

} // namespace olmkit

#endif
