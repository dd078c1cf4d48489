#ifndef OLMKIT_HOST_SESSION_OPENOUTCOME_H
#define OLMKIT_HOST_SESSION_OPENOUTCOME_H

#include <string>

namespace olmhost {

enum class OpenStatus {
    Done,
    NoModule,     // olmfilter.so is missing or unfit
    Unreadable,   // missing, not permitted, read error
    NotAnArchive, // no ZIP at all
    Damaged,      // a ZIP whose directory can't be made out
    Encrypted,
    LimitReached, // it exceeds one of the Limits
};

// How Session::open() ended.
struct OpenOutcome {
    OpenStatus status = OpenStatus::Done;
    std::string text; // for people, one line, without the archive's path; empty when Done
};

} // namespace olmhost

#endif
