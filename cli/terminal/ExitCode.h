#ifndef OLMKIT_CLI_TERMINAL_EXITCODE_H
#define OLMKIT_CLI_TERMINAL_EXITCODE_H

#include <span>

#include "host/session/OpenOutcome.h"
#include "host/stream/EntryFault.h"

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

// Returns all exit codes in ascending order. Help and the manual page print this table.
std::span<const ExitRow> exitRows();

// Returns the exit code of a run whose archive was opened with this status.
ExitCode exitCodeOf(olmhost::OpenStatus status);

// Returns the exit code of a run that found these faults and is all right otherwise: Unreadable
// when reading the archive failed, as what was read is not to be relied on.
ExitCode exitCodeOf(std::span<const olmhost::EntryFault> faults);

} // namespace olmkit

#endif
