#include "cli/command/InfoCommand.h"

#include "cli/command/ArchiveInput.h"
#include "cli/info/SurveyText.h"
#include "cli/info/Surveyor.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

ExitCode runInfo(const InfoOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    ArchiveInput input(options.archive);
    olmhost::Session session;
    if (const ExitCode code = input.open(session, messages); code != ExitCode::Done) {
        return code;
    }

    ArchiveSurvey report = Surveyor(session).survey(options.isChecking);
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
        appendSurvey(output.buffer(), report);
    }
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return report.isDamaged() ? ExitCode::Partial : ExitCode::Done;
}

} // namespace olmkit
