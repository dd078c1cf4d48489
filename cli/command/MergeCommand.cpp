#include "cli/command/MergeCommand.h"

#include <string>

#include "cli/manifest/SummaryTable.h"
#include "cli/merge/Merger.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

ExitCode runMerge(const MergeOptions& options, Output& output, Messages& messages) {
    Interrupt::askToStop();
    Merger merger(options, messages);
    const ExitCode code = merger.run();
    if (code == ExitCode::Interrupted) {
        messages.error("interrupted; the same command begins anew");
    }
    if (!merger.isDone()) {
        return code;
    }
    const MergeCounts& counts = merger.counts();
    output.buffer() += std::to_string(counts.messages) +
                       (counts.messages == 1 ? " message of " : " messages of ") +
                       std::to_string(counts.items) + (counts.items == 1 ? " item" : " items") +
                       " joined in " + options.target() + "\n";
    if (merger.summary() != nullptr) {
        output.buffer() += summaryTable(*merger.summary());
    }
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return code;
}

} // namespace olmkit
