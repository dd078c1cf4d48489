#ifndef OLMKIT_HOST_SESSION_ATTACHMENTACCOUNT_H
#define OLMKIT_HOST_SESSION_ATTACHMENTACCOUNT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace olmhost {

// One attachment as it stands in the message.
struct AttachmentAccount {
    static constexpr std::size_t longestName = 2048; // UTF-16 units; what is beyond is cut off

    std::u16string name; // its long file name, without a terminator; empty when it has none

    // What it was read from, as the place of that in Extraction::members; none when the document
    // names no entry for it.
    std::optional<std::size_t> member;

    // Bytes of its data in the message; none when it has no data.
    std::optional<std::uint64_t> size;
};

// Told of the data of each attachment as they go into the message, on the thread of the caller:
// `attachment` is the place in Extraction::attachments. Pieces come in order, those of one
// attachment after those of the one before.
using AttachmentBytes =
    std::function<void(std::size_t attachment, std::span<const std::byte> bytes)>;

} // namespace olmhost

#endif
