#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOR_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOR_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/extract/ItemWriter.h"
#include "cli/extract/MessagePaths.h"
#include "cli/extract/RunOutput.h"
#include "cli/extract/Selection.h"
#include "cli/extract/Summary.h"
#include "cli/extract/WorkerPool.h"
#include "cli/rows/ListedShare.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "cli/terminal/Progress.h"
#include "host/session/Session.h"

namespace olmkit {

// How far a run is.
struct ExtractCounts {
    std::uint64_t known = 0;     // wanted items that were found so far
    std::uint64_t requested = 0; // of those, the ones that were dealt with:
    std::uint64_t written = 0;   // they have their message,
    std::uint64_t warned = 0;    // it lacks something, or something may be wrong with it,
    std::uint64_t bytes = 0;     // of the messages

    std::uint64_t failed() const { return requested - written; }
};

// One run of an extraction: walks the rows, and makes the messages of the wanted items of an entry
// as soon as the entry is listed, so that no more than one entry's rows are ever held.
//
// With several jobs, other threads make messages while this one walks on. Messages get their names,
// lines their place in the manifest and people their warnings in the order of the items and on this
// thread alone, so that all of it is the same however many threads there are.
class Extractor {
public:
    // All borrowed. `session` is open and not yet listed; `output` takes what a dry run tells.
    Extractor(const ExtractOptions& options, olmhost::Session& session, Output& output,
              Messages& messages);
    Extractor(const Extractor&) = delete;
    Extractor& operator=(const Extractor&) = delete;
    ~Extractor();

    // The whole run, but for the faults of entries. Call it once.
    ExitCode run();

    const ExtractCounts& counts() const { return numbers; }
    // Whether the run ended before all items were dealt with.
    bool isStopped() const;
    // Whether the output folder was not for this run; then people know why.
    bool isRefused() const { return refusal != ExitCode::Done; }
    // Whether another run can go on where this one ended.
    bool canBeResumed() const { return isStopped() && runOutput.isOpen(); }

    // The books, once run() has ended.
    const Summary& books() const { return summary; }

    // What was found wrong with entries, each once, in the order of the entries.
    std::vector<olmhost::EntryFault> faults() const;
    // The entries whose faults were told as an item's warnings.
    const std::set<std::uint64_t>& reportedEntries() const { return told; }

private:
    // Of an entry, or of no entry; what was found; the text where there is no entry.
    using FaultKey = std::tuple<std::uint64_t, olmhost::FaultKind, std::string>;

    bool walk();
    void note(const olmhost::Row& row);
    void noteFaults();
    bool openOutput();
    void writeNoted();
    void refuseIndexesLeft();
    void writePlaces();
    void submit(WantedItem wanted);
    bool isForWorkers(const WantedItem& wanted) const;
    void plan(const WantedItem& wanted);
    void finishTasks(std::size_t mostLeft);
    void awaitFirst();
    void dropTasks();
    void finish(ItemTask& task);
    void finishRow(const ManifestRow& row, const std::string& line, const std::string& kind);
    void closeBooks(bool isAtEnd);
    double passedShare() const;
    void endOutput(bool isAtEnd);
    void outputFailed(const std::string& name, int errorNumber);
    ExitCode exitCode() const;

    const ExtractOptions& options;
    olmhost::Session& session;
    Output& output;
    Messages& messages;
    Progress progress;
    ListedShare listed;
    Selection selection;
    MessagePaths paths;
    std::vector<WantedItem> noted; // of the entry at hand
    std::map<ItemPlace, WantedItem> notedPlaces;
    std::set<std::uint64_t> faultyEntries; // that the listing found something wrong with
    std::size_t faultsNoted = 0;

    Summary summary;
    RunOutput runOutput;
    ItemWriter items;
    std::deque<std::unique_ptr<ItemTask>> tasks; // in the order in which they are finished
    std::unique_ptr<WorkerPool> pool;            // none for one job; ends ahead of the tasks

    bool isOutputLost = false; // nothing more can be written
    bool isAtLimit = false;    // more items have failed than may
    bool hasOutputFailed = false;
    bool hasLosses = false; // something is missing in a message, or wrong
    bool isOlm = true;
    ExitCode refusal = ExitCode::Done; // of the output folder
    std::uint64_t nextIndex = 0;       // of the first item that was not dealt with
    ExtractCounts numbers;
    std::set<std::uint64_t> told;
    std::map<FaultKey, std::string> itemFaults; // with their texts
};

} // namespace olmkit

#endif
