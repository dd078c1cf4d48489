#ifndef OLMKIT_CLI_TERMINAL_EXITCODE_H
#define OLMKIT_CLI_TERMINAL_EXITCODE_H

#include <span>

#include "host/session/OpenOutcome.h"

namespace olmkit {

enum class ExitCode {
    Done = 0,
    Partial = 1,
    Usage = 2,
    Unreadable = 3,
    NotAnArchive = 4,
    OutputFailed = 5,
    LimitReached = 6,
    Interrupted = 130,
};

struct ExitRow {
    ExitCode code;
    const char* meaning;
};

// What a run can end with; everything that tells of exit codes prints this table.
std::span<const ExitRow> exitRows();

// The exit code of an archive that did not open.
ExitCode exitCodeOf(olmhost::OpenStatus status);

} // namespace olmkit

#endif
