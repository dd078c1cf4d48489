#ifndef OLMKIT_HOST_SESSION_ATTACHMENTACCOUNT_H
#define OLMKIT_HOST_SESSION_ATTACHMENTACCOUNT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace olmhost {

// One attachment of a message.
struct AttachmentAccount {
    static constexpr std::size_t maxName = 2048; // UTF-16 units; a longer name is cut off

    std::u16string name; // its long file name, without a terminator; empty when it has none

    // The entry that it was read from, as an index in Extraction::members; none when the document
    // names no entry for it.
    std::optional<std::size_t> member;

    // Bytes of its data in the message; none when it has no data.
    std::optional<std::uint64_t> size;
};

// Receives the data of each attachment as they are written to the message, on the caller's thread.
// `attachment` is the index in Extraction::attachments. Pieces come in order, one attachment after
// another.
using AttachmentBytes =
    std::function<void(std::size_t attachment, std::span<const std::byte> bytes)>;

} // namespace olmhost

#endif
