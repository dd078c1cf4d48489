#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOR_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOR_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/command/ExitCode.h"
#include "cli/command/ExtractOptions.h"
#include "cli/extract/ItemWriter.h"
#include "cli/extract/Manifest.h"
#include "cli/extract/MessagePaths.h"
#include "cli/extract/OutputDirectory.h"
#include "cli/extract/Selection.h"
#include "cli/extract/Summary.h"
#include "cli/terminal/Messages.h"
#include "host/session/Session.h"

namespace olmkit {

// One run of an extraction: walks the rows, and writes the wanted items of an entry as soon as the
// entry is listed, so that no more than one entry's rows are ever held.
class Extractor {
public:
    // All borrowed. `session` is open and not yet listed.
    Extractor(const ExtractOptions& options, olmhost::Session& session, Messages& messages);

    // The whole run, but for the faults of entries. Call it once.
    ExitCode run();

    std::uint64_t requestedCount() const { return requested; }
    // Whether the run ended before all items were dealt with.
    bool isStopped() const;
    std::uint64_t writtenCount() const { return written; }
    std::uint64_t warnedCount() const { return warned; }

    // The books, once run() has ended.
    const Summary& books() const { return summary; }

    // The entries whose faults were told as an item's warnings.
    const std::set<std::uint64_t>& toldEntries() const { return told; }

private:
    bool walk();
    void note(const olmhost::Row& row);
    bool openOutput();
    void writeNoted();
    void refuseIndexesLeft();
    void writePlaces();
    void write(const WantedItem& wanted);
    void finish(const WantedItem& wanted, const ItemOutcome& outcome);
    void finishRow(const ManifestRow& row, const std::string& kind);
    void closeBooks(bool isAtEnd);
    void outputFailed(const std::string& name, int errorNumber);
    ExitCode exitCode() const;

    const ExtractOptions& options;
    olmhost::Session& session;
    Messages& messages;
    Selection selection;
    MessagePaths paths;
    std::vector<WantedItem> noted; // of the entry at hand
    std::map<ItemPlace, WantedItem> notedPlaces;

    OutputDirectory directory;
    Manifest manifest;
    Summary summary;
    ItemWriter items;
    bool isOutputOpen = false;
    bool isOutputLost = false; // nothing more can be written
    bool hasOutputFailed = false;
    bool hasLosses = false; // something is missing in a message, or wrong
    bool isOlm = true;
    std::uint64_t requested = 0; // items that were dealt with
    std::uint64_t written = 0;
    std::uint64_t warned = 0;
    std::set<std::uint64_t> told;
};

} // namespace olmkit

#endif
