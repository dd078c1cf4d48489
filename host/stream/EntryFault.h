#ifndef OLMKIT_HOST_STREAM_ENTRYFAULT_H
#define OLMKIT_HOST_STREAM_ENTRYFAULT_H

#include <cstdint>
#include <limits>
#include <string>

namespace olmhost {

// What can be wrong with one entry of an archive that is open as such.
enum class FaultKind {
    CannotOpen,   // not there, a directory, an unknown compression
    Encrypted,    // needs a password
    Damaged,      // its data can't be read or inflated to the end, or its size is wrong
    Checksum,     // all of it came, and its CRC-32 is wrong
    LimitReached, // it exceeds one of the Limits
    BrokenMarkup, // its XML is not well formed, or ends before its root element does
};

// One fault, told once.
struct EntryFault {
    // For a fault that concerns no entry: a name that no file has.
    static constexpr std::uint64_t noEntry = std::numeric_limits<std::uint64_t>::max();

    FaultKind kind;
    std::uint64_t entryIndex; // in the archive's directory, or noEntry
    std::string text;         // for people, one line, without the entry's name
};

} // namespace olmhost

#endif
