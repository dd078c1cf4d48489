#ifndef OLMKIT_CLI_EXTRACT_ITEMWRITER_H
#define OLMKIT_CLI_EXTRACT_ITEMWRITER_H

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/extract/AttachmentHashes.h"
#include "cli/extract/AttachmentSpool.h"
#include "cli/extract/ManifestRow.h"
#include "cli/extract/MessageFile.h"
#include "cli/extract/MessagePaths.h"
#include "cli/files/OutputDirectory.h"
#include "host/session/Session.h"

namespace olmkit {

// An item that is to be written, as its row tells it.
struct WantedItem {
    ManifestRow row; // what is known ahead of the extraction
    std::string kind;
    MessagePath path;
    bool isListed = true;
    std::optional<timespec> time; // that its file gets
    std::string keptLine;         // the manifest's, when an earlier run has written it
};

// What became of it.
struct ItemOutcome {
    ManifestRow row;  // with neither path nor error as long as the message has no name
    std::string line; // the row's, when an earlier run has told it
    std::optional<TemporaryFile> message;         // to be placed
    HashText messageHash;                         // to be entered in the row
    std::vector<HashText> attachmentHashes;       // to be entered in the row's attachments
    std::unique_ptr<AttachmentSpool> attachments; // to be placed with it; null: not asked for
    bool isInterrupted = false;            // the run was asked to stop: as if it had not been begun
    bool hasLosses = false;                // something is missing in the message, or wrong
    int outputError = 0;                   // an errno value: the output took no more
    std::set<std::uint64_t> faultyEntries; // whose faults its warnings tell
    std::vector<olmhost::EntryFault> faults; // everything that was found wrong on the way

    // Whether it can be placed without waiting.
    bool isHashed() const;
};

// Makes items messages, one at a time. Each thread has one of its own.
class ItemWriter {
public:
    // How it asks the session for an item.
    enum class Access {
        ByIndex, // the session is the one that lists
        ByPlace, // it is opened beside that one
    };

    // All borrowed; the directory is open when write() is called. `withAttachments`: they get files
    // of their own besides.
    ItemWriter(olmhost::Session& session, OutputDirectory& directory, Access access,
               bool withAttachments)
        : session(session), access(access), directory(directory), withAttachments(withAttachments),
          message(directory, hashThread), attachmentHashes(hashThread) {}

    // Makes the message, whole but for its name; or finds that an earlier run has written it.
    ItemOutcome write(const WantedItem& wanted);

    // Gives the message of an outcome its name, and first its attachments theirs, once their hashes
    // are made. Leaves an outcome without a message as it is.
    static void place(const WantedItem& wanted, OutputDirectory& directory, ItemOutcome& outcome);

private:
    bool keep(const WantedItem& wanted, ItemOutcome& outcome) const;
    bool isThere(const std::string& path, std::uint64_t size, const std::string& sha256) const;
    olmhost::Extraction extract(const ManifestRow& row, ItemOutcome& outcome);
    void addAttachments(const olmhost::Extraction& extraction, ItemOutcome& outcome);
    void finish(const WantedItem& wanted, ItemOutcome& outcome);
    void judge(const olmhost::Extraction& extraction, ItemOutcome& outcome);

    olmhost::Session& session;
    Access access;
    OutputDirectory& directory;
    bool withAttachments;
    HashThread hashThread;
    MessageFile message;
    AttachmentHashes attachmentHashes;
};

} // namespace olmkit

#endif
