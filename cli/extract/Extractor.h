#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOR_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOR_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/extract/ItemQueue.h"
#include "cli/extract/MessagePaths.h"
#include "cli/extract/RunResults.h"
#include "cli/extract/Selection.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "host/session/Session.h"

namespace olmkit {

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

    // Runs the extraction and returns its exit code, which does not count the faults(). Reports
    // everything except those faults and an interruption. Call it once.
    ExitCode run();

    const ExtractCounts& counts() const { return results.counts(); }
    // Whether the run ended before all items were finished.
    bool isStopped() const { return results.isStopped(); }
    // Whether the output folder could not be used, which has been reported.
    bool isRefused() const { return results.isRefused(); }
    // Whether a later run can resume this one.
    bool canBeResumed() const { return isStopped() && results.isOutputOpen(); }

    // Returns the reconciliation. Complete after run(), unless that was stopped.
    const SummaryNumbers& summary() const { return results.summary(); }

    // Returns the faults of the archive's entries, in the order of the entries.
    std::vector<olmhost::EntryFault> faults() const { return results.faults().faults(); }
    // Returns the entries whose faults run() has reported as warnings of items.
    const std::set<std::uint64_t>& reportedEntries() const {
        return results.faults().reportedEntries();
    }

private:
    bool walk();
    void note(const olmhost::Row& row);
    void writeNoted();
    void failMissingIndexes();
    void writePlaces();
    void submit(WantedItem wanted);
    bool isShareable(const WantedItem& wanted) const;
    void plan(const WantedItem& wanted);
    void finishItems(std::size_t maxLeft);

    const ExtractOptions& options;
    olmhost::Session& session;
    Output& output;
    Selection selection;
    MessagePaths paths;
    std::vector<WantedItem> noted; // of the current entry
    std::map<ItemPlace, WantedItem> notedPlaces;
    RunResults results;
    ItemQueue queue;
};

} // namespace olmkit

#endif
