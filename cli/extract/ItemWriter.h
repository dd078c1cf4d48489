#ifndef OLMKIT_CLI_EXTRACT_ITEMWRITER_H
#define OLMKIT_CLI_EXTRACT_ITEMWRITER_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/extract/AttachmentHashes.h"
#include "cli/extract/AttachmentSpool.h"
#include "cli/extract/MessageFile.h"
#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestRow.h"
#include "host/session/Session.h"

namespace olmkit {

// An item that is to be written.
struct WantedItem {
    ManifestRow row;       // what is known before the extraction
    std::string_view kind; // static; empty for an item without a row
    OutputPath path;
    bool isListed = true;
    std::optional<timespec> time; // modification time of its files
    std::string keptLine;         // its line in the manifest of the run that is resumed, or empty
};

// The result for one item.
struct ItemOutcome {
    ManifestRow row;                              // without a path until the message is placed
    std::string line;                             // of the row, when an earlier run wrote it
    std::optional<TemporaryFile> message;         // complete; to be placed
    HashText messageHash;                         // to be entered in the row
    std::vector<HashText> attachmentHashes;       // to be entered in the row's attachments
    std::unique_ptr<AttachmentSpool> attachments; // to be placed too; null: not requested
    bool isInterrupted = false;                   // the run was asked to stop; nothing was done
    bool hasLosses = false;                       // something is missing or wrong in the message
    int outputError = 0;                          // an errno value: the output failed
    std::set<std::uint64_t> reportedEntries;      // whose faults are among the warnings
    std::vector<olmhost::EntryFault> faults;      // of all entries that were read

    // Whether place() needs not wait.
    bool isHashed() const;
    // How much memory, about, it holds while it waits to be placed.
    std::size_t heldBytes() const;
};

// Makes the messages of items, one at a time. Each thread has an object of its own.
class ItemWriter {
public:
    // How the session finds an item.
    enum class Access {
        ByIndex, // it is the session that lists the archive
        ByPlace, // it was opened beside that one
    };

    // `session` and `directory` are borrowed; the directory is open before the first write(). With
    // `withAttachments` the attachments also get files of their own.
    ItemWriter(olmhost::Session& session, OutputDirectory& directory, Access access,
               bool withAttachments)
        : session(session), access(access), directory(directory), withAttachments(withAttachments),
          message(directory, hashThread), attachmentHashes(hashThread) {}

    // Makes the message under a temporary name, or finds that an earlier run has written it.
    ItemOutcome write(const WantedItem& wanted);

    // Waits for the hashes, and moves the attachments and then the message of an outcome to their
    // final names. Does nothing for an outcome without a message.
    static void place(const WantedItem& wanted, OutputDirectory& directory, ItemOutcome& outcome);

private:
    bool keep(const WantedItem& wanted, ItemOutcome& outcome) const;
    olmhost::Extraction extract(const ManifestRow& row, ItemOutcome& outcome);
    void addAttachments(const olmhost::Extraction& extraction, ItemOutcome& outcome);
    void finish(const WantedItem& wanted, ItemOutcome& outcome);
    void explain(const olmhost::Extraction& extraction, ItemOutcome& outcome);

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
