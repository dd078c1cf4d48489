#ifndef OLMKIT_HOST_ARCHIVE_LOCALHEADER_H
#define OLMKIT_HOST_ARCHIVE_LOCALHEADER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/archive/ArchiveBytes.h"
#include "host/archive/EntryInfo.h"

namespace olmhost {

// The header before an entry's data (APPNOTE 4.3.7). It repeats what the directory says.
struct LocalHeader {
    bool hasSignature = false;
    std::string name;        // bytes as they are
    std::string unicodeName; // UTF-8, of an extra field (APPNOTE 4.6.9); mostly empty
    EntryInfo info;
    bool hasDescriptor = false; // the checksum and the sizes may be 0: they follow the data

    // Reads the header at `offset`. Returns nothing when the file ends before it does, or can't be
    // read.
    static std::optional<LocalHeader> read(ArchiveBytes& bytes, std::uint64_t offset);

    // Returns how it differs from what the directory says, the entry's name as it is there and the
    // rest: human-readable, one line; empty when it doesn't.
    std::string differenceFrom(std::string_view entryName, const EntryInfo& entry) const;

private:
    void readExtra(std::string_view extra);
};

} // namespace olmhost

#endif
