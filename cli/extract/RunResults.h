#ifndef OLMKIT_CLI_EXTRACT_RUNRESULTS_H
#define OLMKIT_CLI_EXTRACT_RUNRESULTS_H

#include <cstdint>
#include <string>
#include <string_view>

#include "cli/extract/ExtractOptions.h"
#include "cli/extract/FaultLog.h"
#include "cli/extract/RunOutput.h"
#include "cli/extract/WorkerPool.h"
#include "cli/manifest/Summary.h"
#include "cli/rows/ListedShare.h"
#include "cli/rows/RowFacts.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Progress.h"
#include "host/session/Session.h"

namespace olmkit {

// The numbers of a run.
struct ExtractCounts {
    std::uint64_t known = 0;     // wanted items that were found so far
    std::uint64_t requested = 0; // of those, the finished ones, written or failed
    std::uint64_t written = 0;   // of those, the ones with a message
    std::uint64_t warned = 0;    // finished items with warnings
    std::uint64_t bytes = 0;     // of the messages

    std::uint64_t failed() const { return requested - written; }
};

// Takes the results of a run's items, in order: names their files, writes the manifest and
// the summary, reports what is wrong, counts, and knows when the run has to stop and its exit code.
class RunResults {
public:
    // All are borrowed. `session` is open.
    RunResults(const ExtractOptions& options, const olmhost::Session& session, Messages& messages);
    RunResults(const RunResults&) = delete;
    RunResults& operator=(const RunResults&) = delete;
    ~RunResults() = default;

    // Opens the output, once; a dry run has none. Returns false after a message when it can't be
    // used.
    bool openOutput();
    OutputDirectory& directory() { return output.directory(); }

    // Returns the line of an item in the manifest of the run that is resumed, or an empty text.
    std::string keptLine(std::uint64_t index) {
        return output.manifest().keptLines().lineOfIndex(index);
    }

    // A row was listed.
    void list(const olmhost::Row& row, const RowFacts& facts);
    // A wanted item was found. `kind` is empty for an item without a row.
    void request(std::string_view kind);

    // Finishes a requested item: one whose message is made, one of a dry run, or one that failed
    // before there was anything to make.
    void finish(ItemTask& task);
    void finishPlanned();
    void finishFailed(const ManifestRow& row);

    // Stops the run, as its output takes no more.
    void loseOutput() { isOutputLost = true; }

    // Whether the run has to end before all items are finished.
    bool isStopped() const;

    // Ends the output, and the progress that is shown. `isAtEnd`: the whole archive was listed.
    void end(bool isAtEnd);

    // The exit code, which does not count the faults.
    ExitCode exitCode() const;

    const ExtractCounts& counts() const { return numbers; }
    const SummaryNumbers& summary() const { return totals.numbers(); }
    FaultLog& faults() { return faultLog; }
    const FaultLog& faults() const { return faultLog; }
    bool isRefused() const { return refusal != ExitCode::Done; }
    bool isOutputOpen() const { return output.isOpen(); }

private:
    void finishRow(const ManifestRow& row, const std::string& line, std::string_view kind);
    void report(const ManifestRow& row, std::string_view kind);
    double passedShare() const;
    void reconcile(bool isAtEnd);
    void outputFailed(const std::string& name, int errorNumber);

    const ExtractOptions& options;
    const olmhost::Session& session;
    Messages& messages;
    Progress progress;
    ListedShare listed;
    RunOutput output;
    FaultLog faultLog;
    Summary totals;
    ExtractCounts numbers;
    std::uint64_t nextIndex = 0;       // after the last item that was finished
    ExitCode refusal = ExitCode::Done; // of the output folder
    bool isOutputLost = false;         // nothing more can be written
    bool hasOutputFailed = false;
    bool isAtLimit = false; // as many items have failed as may
    bool hasLosses = false; // something is missing or wrong in a message
};

} // namespace olmkit

#endif
