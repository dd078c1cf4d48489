#ifndef OLMKIT_CLI_EXTRACT_MESSAGEFILE_H
#define OLMKIT_CLI_EXTRACT_MESSAGEFILE_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <vector>

#include "cli/files/HashThread.h"
#include "cli/files/OutputDirectory.h"
#include "cli/files/TemporaryFile.h"
#include "host/stream/ByteSink.h"

namespace olmkit {

// Takes the bytes of a message, in memory while it is small and then in a temporary file. Only
// OutputDirectory::place() makes the complete file appear under its name.
//
// Order of calls, for each message: begin(), append() and overwrite(), finish() or discard().
class MessageFile : public olmhost::ByteSink {
public:
    // Both are borrowed.
    MessageFile(OutputDirectory& directory, HashThread& hashThread)
        : directory(directory), hashThread(hashThread) {}
    MessageFile(const MessageFile&) = delete;
    MessageFile& operator=(const MessageFile&) = delete;
    ~MessageFile() override { discard(); }

    void begin();

    // Both return false after an error, and when the run has been asked to stop.
    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    // Writes the rest and moves the complete message to `finished` and its SHA-256, which may be
    // computed later, to `sha256`. `time` is the file's modification time. Returns 0 or an errno
    // value; after an error the message is discarded.
    int finish(std::optional<TemporaryFile>& finished, HashText& sha256,
               const std::optional<timespec>& time);

    // Removes the message.
    void discard();

    // Returns the errno value of the first failure, or 0.
    int errorNumber() const { return error; }

    // Returns the size of the message in bytes.
    std::uint64_t size() const { return written + pending.size(); }

private:
    bool isUsable();
    bool flush();
    bool store();
    bool writeAt(std::uint64_t offset, std::span<const std::byte> bytes);
    bool hash(HashText& sha256);

    OutputDirectory& directory;
    HashThread& hashThread;
    std::vector<std::byte> pending; // the bytes after the first `written` ones
    std::uint64_t written = 0;      // bytes in the temporary file
    std::optional<TemporaryFile> file;
    int error = 0;
};

} // namespace olmkit

#endif
