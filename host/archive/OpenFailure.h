#ifndef OLMKIT_HOST_ARCHIVE_OPENFAILURE_H
#define OLMKIT_HOST_ARCHIVE_OPENFAILURE_H

#include <string>

namespace olmhost {

// Why a file did not open as an archive.
enum class OpenFailureKind {
    None,
    Unreadable,   // missing, not permitted, a read error: trying again may help
    NotAnArchive, // a directory, a special file, an empty file, anything but a ZIP archive
    Damaged,      // a ZIP archive that is cut off, or whose directory contradicts itself
    Encrypted,    // every document in it needs a password
    LimitReached, // its directory has more rows or longer names than the module can read
};

struct OpenFailure {
    OpenFailureKind kind = OpenFailureKind::None;
    std::string text; // human-readable, one line, without the file's path: "is empty"

    // Returns the failure for a system call that failed with this errno value.
    static OpenFailure unreadable(int error);
};

} // namespace olmhost

#endif
