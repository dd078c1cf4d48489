#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTSPOOL_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTSPOOL_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <vector>

#include "cli/extract/MessagePaths.h"
#include "cli/files/OutputDirectory.h"
#include "cli/files/TemporaryFile.h"
#include "cli/manifest/ManifestRow.h"

namespace olmkit {

// Keeps the attachments of one message until the message is complete, and then writes each to a
// file of its own. Long attachments are kept in a temporary file.
class AttachmentSpool {
public:
    // `directory` is open and borrowed.
    explicit AttachmentSpool(OutputDirectory& directory) : directory(directory) {}
    AttachmentSpool(const AttachmentSpool&) = delete;
    AttachmentSpool& operator=(const AttachmentSpool&) = delete;
    ~AttachmentSpool() = default;

    // Adds the next bytes of an attachment, by its number from 0. Attachments come in ascending
    // order. place() returns the first failure.
    void append(std::size_t attachment, std::span<const std::byte> bytes);

    // Ends the attachments. Until place(), the object holds no descriptor.
    void finish();

    // Returns how much the object holds while it waits for place(): the bytes in memory, and for a
    // temporary file as many as memory holds at most, so that not many of them wait either.
    std::size_t heldBytes() const;

    // Writes the attachments that are in the message to the folder
    // MessagePaths::attachmentFolder() and sets their paths in `rows`. `time` is the files'
    // modification time. Returns 0 or an errno value, EINTR when the run was asked to stop; then
    // files already written stay, and no path is set.
    int place(const OutputPath& message, const std::optional<timespec>& time,
              std::vector<AttachmentRow>& rows);

private:
    bool flush();
    int placeAll(const OutputPath& message, const std::optional<timespec>& time,
                 std::vector<AttachmentRow>& rows);
    int read(std::uint64_t offset, std::span<std::byte> bytes) const;
    int write(std::uint64_t offset, std::uint64_t size, const OutputPath& path,
              const std::optional<timespec>& time);

    OutputDirectory& directory;
    std::vector<std::byte> pending;    // the bytes after the first `written` ones
    std::uint64_t written = 0;         // bytes in the file
    std::vector<std::uint64_t> starts; // offset of each attachment among all bytes
    std::optional<TemporaryFile> spooled;
    int error = 0; // an errno value: the first failure
};

} // namespace olmkit

#endif
