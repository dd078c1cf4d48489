#include "cli/command/ExtractCommand.h"

#include <cstdlib>
#include <vector>

#include "cli/command/ArchiveInput.h"
#include "cli/extract/Extractor.h"
#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryTable.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

std::string summary(const ExtractOptions& options, const Extractor& extractor) {
    const std::uint64_t requested = extractor.counts().requested;
    const std::uint64_t written = extractor.counts().written;
    std::string text = std::to_string(written) + " of " + std::to_string(requested) +
                       (requested == 1 ? " message" : " messages") + " written to " +
                       options.directory;
    if (written < requested) {
        text += "; " + std::to_string(requested - written) + " failed, see " + options.directory +
                "/" + runfile::manifest;
    }
    if (const std::uint64_t warned = extractor.counts().warned; warned > 0) {
        text += "; " + std::to_string(warned) + " with warnings";
    }
    return text + (extractor.isStopped() ? "; the others were not tried\n" : "\n");
}

const char* howToGoOn(const Extractor& extractor) {
    return extractor.canBeResumed() ? ". The same command with --resume goes on from here" : "";
}

} // namespace

ExitCode runExtract(const ExtractOptions& options, Output& output, Messages& messages) {
    Interrupt::askToStop();
    ArchiveInput input(options.archive);
    olmhost::Session session;
    if (const ExitCode code = input.open(session, messages); code != ExitCode::Done) {
        return code;
    }

    if (options.isDryRun) {
        // When nobody reads the paths any more, there is nothing left to do or to undo.
        output.whenClosed([] { std::_Exit(static_cast<int>(ExitCode::Done)); });
    }
    Extractor extractor(options, session, output, messages);
    ExitCode code = extractor.run();
    const std::vector<olmhost::EntryFault> faults = extractor.faults();
    messages.faults(options.archive, session, faults, extractor.reportedEntries());
    if (!faults.empty() && code == ExitCode::Done) {
        code = ExitCode::Partial;
    }
    if (code == ExitCode::Interrupted) {
        messages.error("interrupted; " + std::to_string(extractor.counts().written) +
                       " messages were written" + howToGoOn(extractor));
        return code;
    }
    if (code == ExitCode::NotAnArchive) {
        messages.noOlmArchive(options.archive, session);
        return code;
    }
    if (extractor.isRefused()) {
        return code;
    }
    if (extractor.canBeResumed()) {
        messages.error("stopped; " + std::to_string(extractor.counts().written) +
                       " messages were written" + howToGoOn(extractor));
    }
    if (!options.isDryRun && !messages.isQuiet()) {
        output.buffer() += summary(options, extractor) + summaryTable(extractor.summary());
    }
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return code;
}

} // namespace olmkit
