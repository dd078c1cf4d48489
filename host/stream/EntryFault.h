#ifndef OLMKIT_HOST_STREAM_ENTRYFAULT_H
#define OLMKIT_HOST_STREAM_ENTRYFAULT_H

#include <cstdint>
#include <limits>
#include <string>

namespace olmhost {

// What can be wrong with one entry of an open archive.
enum class FaultKind {
    CannotOpen,   // not there, a directory, an unknown compression
    Encrypted,    // needs a password
    Damaged,      // its data can't be read or inflated to the end, or its size is wrong
    Checksum,     // it was read to its end, and its CRC-32 is wrong
    OtherHeader,  // its local header differs from what the directory says, which was used
    LimitReached, // it exceeds one of the Limits
    ReadFailed,   // the system could not read the archive's file; trying again may help
    BrokenMarkup, // its XML is not well formed, or ends before its root element does
};

// One fault of an entry.
struct EntryFault {
    // For a fault without an entry: no file has the name that was asked for.
    static constexpr std::uint64_t noEntry = std::numeric_limits<std::uint64_t>::max();

    FaultKind kind;
    std::uint64_t entryIndex; // in the archive's directory, or noEntry
    std::string text;         // human-readable, UTF-8, one line, without the entry's name
};

} // namespace olmhost

#endif
