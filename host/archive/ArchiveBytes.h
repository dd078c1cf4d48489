#ifndef OLMKIT_HOST_ARCHIVE_ARCHIVEBYTES_H
#define OLMKIT_HOST_ARCHIVE_ARCHIVEBYTES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "host/archive/OpenFailure.h"

namespace olmhost {

// The bytes of an archive's file, by position. All reading of one archive goes through one window,
// so that small adjacent reads don't cost a system call each: the window grows while reading is
// sequential and is small again after a jump.
class ArchiveBytes {
public:
    // Opens the file for reading. Returns null, with `failure` filled, when it is missing, may not
    // be read or can't be an archive. Never blocks, whatever kind of file it is.
    static std::unique_ptr<ArchiveBytes> open(const std::string& path, OpenFailure& failure);

    // Returns the same open file with a window of its own, for another thread. Returns null, with
    // `failure` filled, when the system has no more descriptors.
    std::unique_ptr<ArchiveBytes> openAgain(OpenFailure& failure) const;

    // Owns the descriptor, of a regular file of `size` bytes.
    ArchiveBytes(int descriptor, std::uint64_t size);
    ~ArchiveBytes();
    ArchiveBytes(const ArchiveBytes&) = delete;
    ArchiveBytes& operator=(const ArchiveBytes&) = delete;

    // Returns the file's size in bytes when it was opened.
    std::uint64_t size() const { return fileSize; }

    // Returns the bytes at `offset`, as many as the window has. Valid until the next call of at()
    // or read(). Empty at the end of the file and when it can't be read.
    std::span<const std::byte> at(std::uint64_t offset);

    // Copies at most `size` bytes from `offset` on. Returns how many; fewer only at the end of the
    // file and when it can't be read.
    std::size_t read(std::uint64_t offset, void* buffer, std::size_t size);

    // Returns the errno value of the last at() or read(); 0 when it didn't fail.
    int error() const { return lastError; }

private:
    std::size_t readFile(std::uint64_t offset, void* buffer, std::size_t size);

    int descriptor;
    std::uint64_t fileSize;
    std::unique_ptr<std::byte[]> window;
    std::uint64_t windowOffset = 0;
    std::size_t windowLength = 0;
    std::size_t loadSize; // bytes, of the last load
    int lastError = 0;
};

} // namespace olmhost

#endif
