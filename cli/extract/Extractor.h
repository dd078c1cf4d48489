#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOR_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOR_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/extract/FaultLog.h"
#include "cli/extract/ItemQueue.h"
#include "cli/extract/MessagePaths.h"
#include "cli/extract/RunOutput.h"
#include "cli/extract/Selection.h"
#include "cli/manifest/Summary.h"
#include "cli/rows/ListedShare.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "cli/terminal/Progress.h"
#include "host/session/Session.h"

namespace olmkit {

// The state of a run.
struct ExtractCounts {
    std::uint64_t known = 0;     // wanted items that were found so far
    std::uint64_t requested = 0; // of those, the finished ones, written or failed
    std::uint64_t written = 0;   // of those, the ones with a message
    std::uint64_t warned = 0;    // finished items with warnings
    std::uint64_t bytes = 0;     // of the messages

    std::uint64_t failed() const { return requested - written; }
};

// One run of an extraction: lists the rows, and makes the messages of the wanted items of an entry
// as soon as the entry is listed, so that only one entry's rows are held.
//
// With several jobs other threads make messages meanwhile. Files get their names, lines their place
// in the manifest and the user the warnings in the order of the items and on the main thread, so
// that all output is the same whatever the number of threads.
class Extractor {
public:
    // All are borrowed. `session` is open and not listed yet; `output` takes the paths of a dry
    // run.
    Extractor(const ExtractOptions& options, olmhost::Session& session, Output& output,
              Messages& messages);
    Extractor(const Extractor&) = delete;
    Extractor& operator=(const Extractor&) = delete;
    ~Extractor() = default;

    // Runs the extraction and returns its exit code, which does not count the faults(). Reports
    // everything except those faults and an interruption. Call it once.
    ExitCode run();

    const ExtractCounts& counts() const { return numbers; }
    // Whether the run ended before all items were finished.
    bool isStopped() const;
    // Whether the output folder could not be used, which has been reported.
    bool isRefused() const { return refusal != ExitCode::Done; }
    // Whether a later run can resume this one.
    bool canBeResumed() const { return isStopped() && runOutput.isOpen(); }

    // Returns the reconciliation. Complete after run(), unless that was stopped.
    const SummaryNumbers& summary() const { return totals.numbers(); }

    // Returns the faults of the archive's entries, in the order of the entries.
    std::vector<olmhost::EntryFault> faults() const { return faultLog.faults(); }
    // Returns the entries whose faults run() has reported as warnings of items.
    const std::set<std::uint64_t>& reportedEntries() const { return faultLog.reportedEntries(); }

private:
    bool walk();
    void note(const olmhost::Row& row);
    bool openOutput();
    void writeNoted();
    void failMissingIndexes();
    void writePlaces();
    void submit(WantedItem wanted);
    bool isShareable(const WantedItem& wanted) const;
    void plan(const WantedItem& wanted);
    void finishItems(std::size_t maxLeft);
    void finish(ItemTask& task);
    void finishRow(const ManifestRow& row, const std::string& line, std::string_view kind);
    void report(const ManifestRow& row, std::string_view kind);
    void reconcile(bool isAtEnd);
    double passedShare() const;
    void endOutput(bool isAtEnd);
    void outputFailed(const std::string& name, int errorNumber);
    ExitCode exitCode() const;

    const ExtractOptions& options;
    olmhost::Session& session;
    Output& output;
    Messages& messages;
    Progress progress;

    // Listing.
    ListedShare listed;
    Selection selection;
    MessagePaths paths;
    std::vector<WantedItem> noted; // of the current entry
    std::map<ItemPlace, WantedItem> notedPlaces;
    FaultLog faultLog;

    // Writing.
    RunOutput runOutput;
    ItemQueue queue;
    Summary totals;
    ExtractCounts numbers;
    std::uint64_t nextIndex = 0; // after the last item that was finished

    // What the run ends with.
    bool isOutputLost = false; // nothing more can be written
    bool hasOutputFailed = false;
    bool isAtLimit = false; // as many items have failed as may
    bool hasLosses = false; // something is missing or wrong in a message
    bool isOlm = true;
    ExitCode refusal = ExitCode::Done; // of the output folder
};

} // namespace olmkit

#endif
