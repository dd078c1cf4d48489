#ifndef OLMKIT_HOST_ARCHIVE_ENTRYDATA_H
#define OLMKIT_HOST_ARCHIVE_ENTRYDATA_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/archive/ArchiveBytes.h"
#include "host/archive/ArchiveFile.h"
#include "host/archive/EntryInfo.h"

namespace olmhost {

// The uncompressed bytes of one entry, by position. What is wrong with them goes to the
// ArchiveFile as soon as it is seen, and what can be had of them is given all the same.
class EntryData {
public:
    // Both are borrowed and must outlive the data.
    EntryData(ArchiveBytes& bytes, ArchiveFile& file) : bytes(bytes), file(file) {}
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;
    virtual ~EntryData() = default;

    // Copies at most `size` bytes from `position` on. Gives how many; less only at the end of what
    // can be had.
    virtual std::size_t read(std::uint64_t position, void* buffer, std::size_t size) = 0;

    // Bytes that can be had. Becomes less when the data turn out to be damaged.
    std::uint64_t end() const { return dataEnd; }

    // What was found wrong so far; empty when nothing was.
    const std::string& fault() const { return faultText; }

protected:
    // Begins with another entry.
    void assign(std::uint64_t newIndex, const EntryInfo& newInfo, std::uint64_t newEnd);

    // Takes the bytes from `position` on into the checksum, as far as they continue what it holds,
    // and tells the fault when they were the last and it is wrong.
    void check(std::uint64_t position, const void* data, std::size_t size);

    // The data end at `position`, early.
    void endEarly(std::uint64_t position);

    void report(FaultKind kind, const std::string& text);

    ArchiveBytes& bytes;
    ArchiveFile& file;
    std::uint64_t index = 0; // of the entry, in the directory
    EntryInfo info;
    std::uint64_t dataEnd = 0;

private:
    std::uint64_t checkedTo = 0; // bytes that `checksum` covers, from the start
    std::uint32_t checksum = 0;
    std::string faultText;
};

} // namespace olmhost

#endif
