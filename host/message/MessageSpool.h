#ifndef OLMKIT_HOST_MESSAGE_MESSAGESPOOL_H
#define OLMKIT_HOST_MESSAGE_MESSAGESPOOL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/stream/ByteSink.h"
#include "host/stream/Export.h"

namespace olmhost {

// Holds one message while it is read.
//
// A message of up to `heldBytes` bytes is held in memory. A larger one is written to a file in
// $TMPDIR, or /tmp, and mapped from there. The file has no name, so it is freed with this object or
// with the process, whichever ends first.
class OLMHOST_EXPORT MessageSpool : public ByteSink {
public:
    static constexpr std::size_t defaultHeldBytes = std::size_t{16} << 20;

    explicit MessageSpool(std::size_t heldBytes = defaultHeldBytes) : heldBytes(heldBytes) {}
    MessageSpool(const MessageSpool&) = delete;
    MessageSpool& operator=(const MessageSpool&) = delete;
    ~MessageSpool() override;

    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    // Returns all that was written, valid as long as this object. Nothing may be written after
    // that. Empty after a failure.
    std::span<const std::byte> contents();

    // Returns the errno of the failure; 0 when there was none.
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
