#ifndef OLMKIT_HOST_CHECK_MESSAGECHECKER_H
#define OLMKIT_HOST_CHECK_MESSAGECHECKER_H

#include <vector>

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/PropertyStreamChecker.h"
#include "host/check/StorageContents.h"

namespace olmhost {

// What a message consists of, with the messages that are embedded in it.
struct MessageCounts {
    std::uint64_t embeddedMessages = 0;
    std::uint64_t recipients = 0;
    std::uint64_t attachments = 0;
    std::uint64_t properties = 0;
    std::uint64_t namedProperties = 0;
};

// Checks that a compound file is a message (MS-OXMSG): its storages, property streams and values,
// its named properties, and the messages in its attachments.
class MessageChecker {
public:
    // Both are borrowed. REQUIRES: compound.check() returned true.
    MessageChecker(CompoundChecker& compound, FindingList& findings)
        : compound(compound), findings(findings) {}

    // Throws ReadFailure.
    void check();

    const MessageCounts& counts() const { return found; }

private:
    struct Pending {
        EntryId storage;
        MessageLevel level;
    };

    void checkClassId();
    void checkStorage(Pending current);
    void checkNames(const StorageContents& contents);
    void checkParts(const char* noun, EntryId storage, const std::vector<PartChild>& parts,
                    MessageLevel level);
    void checkAttachment(EntryId storage, const StorageContents& contents,
                         std::optional<std::uint32_t> method);

    CompoundChecker& compound;
    FindingList& findings;
    MessageFacts facts;
    MessageCounts found;
    std::vector<Pending> pending; // found and not checked yet
};

} // namespace olmhost

#endif
