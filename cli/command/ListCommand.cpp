#include "cli/command/ListCommand.h"

#include "cli/command/ArchiveInput.h"
#include "cli/rows/Listing.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

// Whether the archive has been listed to its end; otherwise the output has failed.
bool listAll(olmhost::Session& session, Listing& listing, const Output& output) {
    const olmhost::RowCallback takeRow = [&listing](const olmhost::Row& row) {
        return listing.take(row) ? olmhost::RowAnswer::Continue : olmhost::RowAnswer::Pause;
    };
    while (!output.failed()) {
        if (session.list(takeRow)) {
            break;
        }
    }
    return !output.failed();
}

} // namespace

ExitCode runList(const ListOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    ArchiveInput input(options.archive);
    olmhost::Session session;
    if (const ExitCode code = input.open(session, messages); code != ExitCode::Done) {
        return code;
    }

    Listing listing(options, output);
    const bool isListed = listAll(session, listing, output);
    const bool isOlm = !isListed || session.isOlmArchive();
    if (isListed && isOlm) {
        listing.finish();
    }
    output.flush();
    const std::size_t faultCount = messages.faults(options.archive, session);

    if (!isOlm) {
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    if (output.isClosed()) {
        return ExitCode::Done;
    }
    if (output.failed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return faultCount == 0 ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
