#ifndef OLMKIT_HOST_STREAM_MEMBERREAD_H
#define OLMKIT_HOST_STREAM_MEMBERREAD_H

#include <cstdint>
#include <optional>
#include <string>

namespace olmhost {

// What was read of one entry that a document names, such as a mail's attachment.
struct MemberRead {
    std::string name;                        // as it was asked for, UTF-8
    std::optional<std::uint64_t> entryIndex; // none when no file has that name
    std::uint64_t size = 0;                  // in bytes, as the archive's directory says
    std::uint64_t bytesRead = 0;             // from the start
    std::string fault; // why it is missing, incomplete or unreliable; empty when nothing is wrong
};

} // namespace olmhost

#endif
