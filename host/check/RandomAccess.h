#ifndef OLMKIT_HOST_CHECK_RANDOMACCESS_H
#define OLMKIT_HOST_CHECK_RANDOMACCESS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "host/stream/Export.h"

namespace olmhost {

// Bytes that can be read from any place: a file, a buffer, whatever the caller has.
class OLMHOST_EXPORT RandomAccess {
public:
    virtual ~RandomAccess() = default;

    // Bytes. It never changes.
    virtual std::uint64_t size() const = 0;

    // Fills `place` with the bytes from `offset` on, all of which lie below size(). Returns 0, or
    // the errno of a failure.
    virtual int read(std::uint64_t offset, std::span<std::byte> place) = 0;
};

// The bytes of a buffer.
class OLMHOST_EXPORT MemoryAccess : public RandomAccess {
public:
    // `bytes` is borrowed and must outlive the object.
    explicit MemoryAccess(std::span<const std::byte> bytes) : bytes(bytes) {}

    std::uint64_t size() const override { return bytes.size(); }
    int read(std::uint64_t offset, std::span<std::byte> place) override;

private:
    std::span<const std::byte> bytes;
};

// The bytes of a regular file.
class OLMHOST_EXPORT FileAccess : public RandomAccess {
public:
    FileAccess() = default;
    FileAccess(const FileAccess&) = delete;
    FileAccess& operator=(const FileAccess&) = delete;
    ~FileAccess() override;

    // Opens the file at `path` (bytes as the file system takes them); called once, before all else.
    // Returns 0, or the errno of a failure: EISDIR for a folder, ESPIPE for what has no size.
    [[nodiscard]] int open(const std::string& path);

    std::uint64_t size() const override { return fileSize; }

    // A file that became shorter is a failure, EIO.
    int read(std::uint64_t offset, std::span<std::byte> place) override;

private:
    int file = -1;
    std::uint64_t fileSize = 0; // bytes, when it was opened
};

} // namespace olmhost

#endif
