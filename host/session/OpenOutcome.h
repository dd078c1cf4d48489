#ifndef OLMKIT_HOST_SESSION_OPENOUTCOME_H
#define OLMKIT_HOST_SESSION_OPENOUTCOME_H

#include <string>

namespace olmhost {

enum class OpenStatus {
    Done,
    NoModule,     // olmfilter.so is missing or unsuitable
    Unreadable,   // missing, not permitted, read error
    NotAnArchive, // not a ZIP archive
    Damaged,      // a ZIP archive whose directory can't be read
    Encrypted,
    LimitReached, // it exceeds one of the Limits
};

// How Session::open() ended.
struct OpenOutcome {
    OpenStatus status = OpenStatus::Done;
    std::string text; // human-readable, one line, without the archive's path; empty when Done
};

} // namespace olmhost

#endif
