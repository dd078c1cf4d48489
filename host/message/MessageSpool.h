#ifndef OLMKIT_HOST_MESSAGE_MESSAGESPOOL_H
#define OLMKIT_HOST_MESSAGE_MESSAGESPOOL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/stream/ByteSink.h"
#include "host/stream/Export.h"

namespace olmhost {

// Keeps one message while it is read.
//
// A short one is held in memory. What grows above `heldBytes` goes to a file in the folder that
// TMPDIR names, or /tmp, and is mapped from there; the file has no name, so it goes with this
// object or with the process, whatever comes first.
class OLMHOST_EXPORT MessageSpool : public ByteSink {
public:
    static constexpr std::size_t usuallyHeld = std::size_t{16} << 20;

    explicit MessageSpool(std::size_t heldBytes = usuallyHeld) : heldBytes(heldBytes) {}
    MessageSpool(const MessageSpool&) = delete;
    MessageSpool& operator=(const MessageSpool&) = delete;
    ~MessageSpool() override;

    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    // All that was written; valid as long as this object. Nothing is written after it. Empty after
    // a failure.
    std::span<const std::byte> contents();

    // The errno of the failure, 0 for none.
    int errorNumber() const { return error; }

private:
    bool openFile();
    bool writeAt(std::uint64_t offset, std::span<const std::byte> bytes);

    std::size_t heldBytes;
    std::vector<std::byte> held; // while there is no file
    int file = -1;
    std::uint64_t fileSize = 0;
    void* mapped = nullptr;
    int error = 0;
};

} // namespace olmhost

#endif
