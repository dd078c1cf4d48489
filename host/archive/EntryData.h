#ifndef OLMKIT_HOST_ARCHIVE_ENTRYDATA_H
#define OLMKIT_HOST_ARCHIVE_ENTRYDATA_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/archive/ArchiveBytes.h"
#include "host/archive/ArchiveFile.h"
#include "host/archive/EntryInfo.h"

namespace olmhost {

// The uncompressed bytes of one entry, by position. What is wrong with them is reported to the
// ArchiveFile as soon as it is found; the bytes that can be read are returned all the same.
class EntryData {
public:
    // Both are borrowed and must outlive the data.
    EntryData(ArchiveBytes& bytes, ArchiveFile& file) : bytes(bytes), file(file) {}
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;
    virtual ~EntryData() = default;

    // Copies at most `size` bytes from `position` on. Returns how many; fewer only at end().
    virtual std::size_t read(std::uint64_t position, void* buffer, std::size_t size) = 0;

    // Returns the number of bytes that can be read. It shrinks when the data turn out to be
    // damaged.
    std::uint64_t end() const { return dataEnd; }

    // Reads what the checksum doesn't cover yet, so that it is compared: nothing when all of the
    // data were read.
    void checkRest();

    // Adds a fault of the entry.
    void report(FaultKind kind, const std::string& text);

    // Returns the entry's index in the directory.
    std::uint64_t entryIndex() const { return index; }

    // Returns whether the file's bytes could not be read. Trying again may help.
    bool hasReadFailed() const { return isReadFailed; }

    // Returns what was found wrong so far; empty when nothing was.
    const std::string& fault() const { return faultText; }

protected:
    // Begins with another entry.
    void assign(std::uint64_t newIndex, const EntryInfo& newInfo, std::uint64_t newEnd);

    // Adds the bytes from `position` on to the checksum, as far as they continue what it covers,
    // and reports a fault when they were the last and it is wrong.
    void check(std::uint64_t position, const void* data, std::size_t size);

    // The data end at `position`, early: the file's bytes can't be read, or are not there.
    void endEarly(std::uint64_t position);

    ArchiveBytes& bytes;
    ArchiveFile& file;
    std::uint64_t index = 0;
    EntryInfo info;
    std::uint64_t dataEnd = 0;

private:
    std::uint64_t checkedTo = 0; // bytes that `checksum` covers, from the start
    std::uint32_t checksum = 0;
    bool isReadFailed = false;
    std::string faultText;
};

} // namespace olmhost

#endif
