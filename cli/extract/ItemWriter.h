#ifndef OLMKIT_CLI_EXTRACT_ITEMWRITER_H
#define OLMKIT_CLI_EXTRACT_ITEMWRITER_H

#include <cstdint>
#include <set>
#include <string>

#include "cli/extract/Manifest.h"
#include "cli/extract/MessageFile.h"
#include "cli/extract/MessagePaths.h"
#include "cli/extract/OutputDirectory.h"
#include "host/session/Session.h"

namespace olmkit {

// An item that is to be written, as its row tells it.
struct WantedItem {
    ManifestRow row; // what is known ahead of the extraction
    std::string kind;
    MessagePath path;
    bool isListed = true;
};

// What became of it.
struct ItemOutcome {
    ManifestRow row;
    bool isInterrupted = false;            // the run was asked to stop: as if it had not been begun
    bool hasLosses = false;                // something is missing in the message, or wrong
    int outputError = 0;                   // an errno value: the output took no more
    std::uint64_t attachmentsWritten = 0;  // whole
    std::uint64_t attachmentsLost = 0;     // in part or altogether
    std::set<std::uint64_t> faultyEntries; // whose faults its warnings tell
};

// Writes items as messages, one at a time.
class ItemWriter {
public:
    // Both borrowed; the directory is open when write() is called.
    ItemWriter(olmhost::Session& session, OutputDirectory& directory)
        : session(session), message(directory) {}

    ItemOutcome write(const WantedItem& wanted);

private:
    void commit(const WantedItem& wanted, ItemOutcome& outcome);
    void judge(const olmhost::Extraction& extraction, ItemOutcome& outcome);

    olmhost::Session& session;
    MessageFile message;
};

} // namespace olmkit

#endif
