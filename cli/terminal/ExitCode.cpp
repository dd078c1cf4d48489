#include "cli/terminal/ExitCode.h"

#include <algorithm>

namespace olmkit {

namespace {

// clang-format off
constexpr ExitRow rows[] = {
    {ExitCode::Done,         "all done"},
    {ExitCode::Partial,      "done, but some items failed or something was lost on the way"},
    {ExitCode::Usage,        "wrong usage, or the program is not installed completely"},
    {ExitCode::Unreadable,   "the archive can't be read; trying again may help"},
    {ExitCode::NotAnArchive, "not an OLM archive, damaged beyond opening, or encrypted"},
    {ExitCode::OutputFailed, "the output can't be written"},
    {ExitCode::LimitReached, "a limit stopped the run"},
    {ExitCode::Interrupted,  "interrupted"},
};
// clang-format on

} // namespace

std::span<const ExitRow> exitRows() {
    return rows;
}

ExitCode exitCodeOf(olmhost::OpenStatus status) {
    switch (status) {
    case olmhost::OpenStatus::Done:
        return ExitCode::Done;
    case olmhost::OpenStatus::NoModule:
        return ExitCode::Usage;
    case olmhost::OpenStatus::Unreadable:
        return ExitCode::Unreadable;
    case olmhost::OpenStatus::NotAnArchive:
    case olmhost::OpenStatus::Damaged:
    case olmhost::OpenStatus::Encrypted:
        return ExitCode::NotAnArchive;
    case olmhost::OpenStatus::LimitReached:
        return ExitCode::LimitReached;
    }
    return ExitCode::Unreadable;
}

ExitCode exitCodeOf(std::span<const olmhost::EntryFault> faults) {
    const bool hasReadFailed = std::ranges::any_of(faults, [](const olmhost::EntryFault& fault) {
        return fault.kind == olmhost::FaultKind::ReadFailed;
    });
    if (hasReadFailed) {
        return ExitCode::Unreadable;
    }
    return faults.empty() ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
