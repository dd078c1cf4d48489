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
// so that small reads side by side cost no system call each: the window grows while reading goes
// forward and is small again after a jump.
class ArchiveBytes {
public:
    // Opens the file for reading. Null with `failure` filled when it is missing, may not be read or
    // is nothing that could be an archive. Never waits, whatever kind of file it is.
    static std::unique_ptr<ArchiveBytes> open(const std::string& path, OpenFailure& failure);

    // The same file, as it was opened, with a window of its own, to be used by another thread. Null
    // with `failure` filled when the system has no more descriptors.
    std::unique_ptr<ArchiveBytes> openAgain(OpenFailure& failure) const;

    // Takes the descriptor of a regular file of `size` bytes, and closes it in the end.
    ArchiveBytes(int descriptor, std::uint64_t size);
    ~ArchiveBytes();
    ArchiveBytes(const ArchiveBytes&) = delete;
    ArchiveBytes& operator=(const ArchiveBytes&) = delete;

    // Bytes, as it was when the file was opened.
    std::uint64_t size() const { return fileSize; }

    // The bytes that lie at `offset`, as many as are at hand. Valid until the next call of at() or
    // read(). Empty at the end of the file and when it can't be read.
    std::span<const std::byte> at(std::uint64_t offset);

    // Copies at most `size` bytes from `offset` on. Gives how many; less only at the end of the
    // file and when it can't be read.
    std::size_t read(std::uint64_t offset, void* buffer, std::size_t size);

    // errno of the last reading of the file; 0 when it didn't fail.
    int error() const { return lastError; }

private:
    std::size_t readFile(std::uint64_t offset, void* buffer, std::size_t size);

    int descriptor;
    std::uint64_t fileSize;
    std::unique_ptr<std::byte[]> window;
    std::uint64_t windowOffset = 0;
    std::size_t windowLength = 0;
    std::size_t loadSize; // bytes of the last loading
    int lastError = 0;
};

} // namespace olmhost

#endif
