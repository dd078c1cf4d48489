#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTSPOOL_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTSPOOL_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <vector>

#include "cli/extract/ManifestRow.h"
#include "cli/extract/MessagePaths.h"
#include "cli/files/OutputDirectory.h"

namespace olmkit {

// Keeps the attachments of one message until the message is whole, and then gives each a file of
// its own. What doesn't fit in memory lies in a file without a name, which goes with the process
// however that ends.
class AttachmentSpool {
public:
    // `directory` is borrowed, and open.
    explicit AttachmentSpool(OutputDirectory& directory) : directory(directory) {}
    AttachmentSpool(const AttachmentSpool&) = delete;
    AttachmentSpool& operator=(const AttachmentSpool&) = delete;
    ~AttachmentSpool();

    // The next bytes of an attachment; attachments come in ascending order. A failure shows in
    // place().
    void append(std::size_t attachment, std::span<const std::byte> bytes);

    // Writes the attachments that are in the message beside it, into the folder
    // MessagePaths::attachmentFolder(), and enters their paths in `rows`. `time`, when given,
    // becomes that of each file's last change. 0 or an errno value, EINTR when the run was asked to
    // stop; files that were written by then stay, and no path is entered.
    int place(const MessagePath& message, const std::optional<timespec>& time,
              std::vector<AttachmentRow>& rows);

private:
    bool flush();
    int read(std::uint64_t offset, std::span<std::byte> bytes) const;
    int write(std::uint64_t offset, std::uint64_t size, const MessagePath& path,
              const std::optional<timespec>& time);

    OutputDirectory& directory;
    std::vector<std::byte> pending;    // what follows the first `written` bytes
    std::uint64_t written = 0;         // bytes that are in the file
    std::vector<std::uint64_t> starts; // of each attachment among all bytes
    int file = -1;
    int error = 0; // an errno value: the first failure
};

} // namespace olmkit

#endif
