#include "cli/command/ExtractCommand.h"

#include "cli/extract/Extractor.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

std::string summary(const ExtractOptions& options, const Extractor& extractor) {
    const std::uint64_t requested = extractor.requestedCount();
    const std::uint64_t written = extractor.writtenCount();
    std::string text = std::to_string(written) + " of " + std::to_string(requested) +
                       (requested == 1 ? " message" : " messages") + " written to " +
                       options.directory;
    if (written < requested) {
        text += "; " + std::to_string(requested - written) + " failed, see " + options.directory +
                "/" + Manifest::fileName;
    }
    if (const std::uint64_t warned = extractor.warnedCount(); warned > 0) {
        text += "; " + std::to_string(warned) + " with warnings";
    }
    return text + (extractor.isStopped() ? "; the others were not tried\n" : "\n");
}

} // namespace

ExitCode runExtract(const ExtractOptions& options, Output& output, Messages& messages) {
    Interrupt::askToStop();
    olmhost::Session session;
    if (const auto outcome = session.open(options.archive);
        outcome.status != olmhost::OpenStatus::Done) {
        messages.openFailure(options.archive, outcome);
        return exitCodeOf(outcome.status);
    }

    Extractor extractor(options, session, messages);
    ExitCode code = extractor.run();
    if (messages.faults(options.archive, session, extractor.toldEntries()) > 0 &&
        code == ExitCode::Done) {
        code = ExitCode::Partial;
    }
    switch (code) {
    case ExitCode::Interrupted:
        messages.tell("interrupted; " + std::to_string(extractor.writtenCount()) +
                      " messages were written. Run the same command again to get all of them");
        return code;
    case ExitCode::NotAnArchive:
        messages.noOlmArchive(options.archive, session);
        return code;
    default:
        break;
    }
    output.buffer() += summary(options, extractor) + extractor.books().table();
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return code;
}

} // namespace olmkit
