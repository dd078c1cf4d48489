#include "cli/command/InfoCommand.h"

#include "cli/info/ReportText.h"
#include "cli/info/Surveyor.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

ExitCode runInfo(const InfoOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    olmhost::Session session;
    if (const auto outcome = session.open(options.archive);
        outcome.status != olmhost::OpenStatus::Done) {
        messages.openFailure(options.archive, outcome);
        return exitCodeOf(outcome.status);
    }

    ArchiveReport report = Surveyor(session).survey(options.isChecking);
    if (!session.isOlmArchive()) {
        messages.faults(options.archive, session);
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    report.archive = options.archive;
    if (options.isJson) {
        output.buffer() += report.json().dump(2, ' ', false, JsonObject::error_handler_t::replace);
        output.buffer() += '\n';
    } else {
        appendReport(output.buffer(), report);
    }
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return report.isDamaged() ? ExitCode::Partial : ExitCode::Done;
}

} // namespace olmkit
