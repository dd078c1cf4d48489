#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTHASHES_H

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "cli/extract/HashThread.h"
#include "cli/extract/Sha256.h"

namespace olmkit {

// The SHA-256 of each attachment of a message, message after message: begin(), bytes, finish().
// Attachments of a block and more are hashed beside the caller's thread.
class AttachmentHashes {
public:
    void begin();

    // The next bytes of an attachment; attachments come in ascending order, some perhaps without
    // bytes.
    void add(std::size_t attachment, std::span<const std::byte> bytes);

    // No bytes are to come any more.
    void finish();

    // Hexadecimal digits, once it is finished; those of no bytes for an attachment without any.
    // Empty when the library has failed. Call it once for each.
    std::string sha256(std::size_t attachment);

private:
    void endAttachment();

    std::deque<Sha256> hashes;    // a deque: the thread has pointers to what it holds
    std::vector<std::byte> block; // of the last one
    bool isLong = false;          // blocks of the last one were given away
    HashThread thread;
};

} // namespace olmkit

#endif
