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

// One message on its way to its file.
//
// It lies in memory while it is small, then in a temporary file; under its own name it appears
// by OutputDirectory::place() alone, whole. Serves message after message: begin(), bytes, finish()
// or discard().
class MessageFile : public olmhost::ByteSink {
public:
    // Both borrowed.
    MessageFile(OutputDirectory& directory, HashThread& hashThread)
        : directory(directory), hashThread(hashThread) {}
    MessageFile(const MessageFile&) = delete;
    MessageFile& operator=(const MessageFile&) = delete;
    ~MessageFile() override { discard(); }

    void begin();

    // Refuse once the run has been asked to stop, and after an error.
    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    // Writes what is left to write, and hands the whole message over, with its SHA-256, which for a
    // long one is made while the caller goes on; `time`, when given, becomes that of the file's
    // last change. 0 or an errno value; after that the message is discarded.
    int finish(std::optional<TemporaryFile>& finished, HashText& sha256,
               const std::optional<timespec>& time);

    // Forgets the message.
    void discard();

    // The errno value of the first failure, 0 for none.
    int errorNumber() const { return error; }

    // Bytes of the message.
    std::uint64_t size() const { return written + pending.size(); }

private:
    bool isUsable();
    bool flush();
    bool store();
    bool writeAt(std::uint64_t offset, std::span<const std::byte> bytes);
    bool hash(HashText& sha256);

    OutputDirectory& directory;
    HashThread& hashThread;
    std::vector<std::byte> pending; // what follows the first `written` bytes
    std::uint64_t written = 0;      // bytes that are in the temporary file
    std::optional<TemporaryFile> file;
    int error = 0;
};

} // namespace olmkit

#endif
