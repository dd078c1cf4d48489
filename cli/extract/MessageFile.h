#ifndef OLMKIT_CLI_EXTRACT_MESSAGEFILE_H
#define OLMKIT_CLI_EXTRACT_MESSAGEFILE_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/extract/OutputDirectory.h"
#include "cli/extract/TemporaryFile.h"
#include "host/stream/ByteSink.h"

namespace olmkit {

// One message on its way to its file.
//
// It lies in memory while it is small, then in a temporary file; under its own name it appears
// by OutputDirectory::place() alone, whole. Serves message after message: begin(), bytes, finish()
// or discard().
class MessageFile : public olmhost::ByteSink {
public:
    // `directory` is borrowed.
    explicit MessageFile(OutputDirectory& directory) : directory(directory) {}
    MessageFile(const MessageFile&) = delete;
    MessageFile& operator=(const MessageFile&) = delete;
    ~MessageFile() override { discard(); }

    void begin();

    // Refuse once the run has been asked to stop, and after an error.
    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    // Writes what is left to write, and hands the whole message over; `time`, when given, becomes
    // that of the file's last change. 0 or an errno value; after that the message is discarded.
    int finish(std::optional<TemporaryFile>& finished, const std::optional<timespec>& time);

    // Forgets the message.
    void discard();

    // The errno value of the first failure, 0 for none.
    int errorNumber() const { return error; }

    // Bytes of the message, and their SHA-256 in hexadecimal digits once it is finished.
    std::uint64_t size() const { return written + pending.size(); }
    const std::string& sha256() const { return digest; }

private:
    bool isUsable();
    bool flush();
    bool writeAt(std::uint64_t offset, std::span<const std::byte> bytes);
    bool hash();

    OutputDirectory& directory;
    std::vector<std::byte> pending; // what follows the first `written` bytes
    std::uint64_t written = 0;      // bytes that are in the temporary file
    std::optional<TemporaryFile> file;
    int error = 0;
    std::string digest;
};

} // namespace olmkit

#endif
