#ifndef OLMKIT_HOST_CHECK_STORAGECONTENTS_H
#define OLMKIT_HOST_CHECK_STORAGECONTENTS_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/MessageChild.h"

namespace olmhost {

// The kinds of storages in a message.
enum class MessageLevel { Top, Embedded, Recipient, Attachment };

constexpr bool isMessage(MessageLevel level) {
    return level == MessageLevel::Top || level == MessageLevel::Embedded;
}

// A stream that holds a property's value or a part of it, or an attachment's storage.
struct ValueChild {
    std::uint32_t tag;
    bool isListValue;
    std::uint32_t index; // in the list
    EntryId id;
};

// A recipient or an attachment.
struct PartChild {
    std::uint32_t number;
    EntryId id;
};

// The storages and streams in one storage of a message, by their names.
class StorageContents {
public:
    // The number of members of a storage, and of entries of a property stream, that are checked. A
    // real message has some hundreds.
    static constexpr std::uint32_t maxLookedAt = std::uint32_t{1} << 20;

    // Reads the names and reports those that don't belong there. Both are borrowed during the call.
    StorageContents(const CompoundChecker& compound, FindingList& findings, EntryId storage,
                    MessageLevel level);

    std::optional<EntryId> propertyStream; // a stream
    std::optional<EntryId> nameStorage;    // a storage; of the top level alone
    std::vector<PartChild> recipients;     // storages, by number
    std::vector<PartChild> attachments;    // storages, by number
    std::vector<ValueChild> values;        // by tag, the list's values after the first stream
    bool isComplete = true;                // there are no more than maxLookedAt

    // Returns the value, or the length stream, of a property; null without one.
    const ValueChild* find(std::uint32_t tag) const;

private:
    void take(const CompoundChecker& compound, FindingList& findings, EntryId id,
              MessageLevel level);
    bool takeStorage(const MessageChild& child, EntryId id, MessageLevel level);
};

} // namespace olmhost

#endif
