#ifndef OLMKIT_HOST_CHECK_PROPERTYCHECKER_H
#define OLMKIT_HOST_CHECK_PROPERTYCHECKER_H

#include <optional>
#include <string>
#include <vector>

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/StorageContents.h"
#include "host/check/StreamCursor.h"
#include "host/message/PropertyType.h"

namespace olmhost {

// What the storages of one message have in common.
struct MessageFacts {
    std::optional<std::uint32_t> namedCount; // ids from 0x8000 on with a name; none: unknown
    std::optional<bool> isUnicode;           // by PidTagStoreSupportMask; none: it doesn't say
};

// Checks the property stream of one storage of a message (MS-OXMSG 2.4), and that each value has
// its stream and each stream its property (2.1).
class PropertyChecker {
public:
    // All are borrowed. `contents` is what `storage` contains. `facts` is filled in where the
    // properties of the top level tell them.
    PropertyChecker(CompoundChecker& compound, FindingList& findings, MessageFacts& facts,
                    const StorageContents& contents, EntryId storage, MessageLevel level);

    void check();

    std::uint64_t propertyCount() const { return entryCount; }

    // PidTagAttachMethod; none when the storage doesn't say.
    std::optional<std::uint32_t> attachMethod() const { return method; }

private:
    // An entry of the property stream.
    struct PropertyEntry {
        std::uint32_t tag;
        std::uint32_t size; // what it says of a value that is not in it
        std::uint32_t order;

        std::uint16_t type() const { return static_cast<std::uint16_t>(tag); }
    };

    using Entries = std::vector<PropertyEntry>;
    using Values = std::span<const ValueChild>;

    void add(FindingCode code, std::string text);
    void add(FindingCode code, std::uint32_t tag, const std::string& text);
    void readEntries();
    void checkHeader(StreamCursor& cursor);
    void checkCount(FindingCode code, const char* noun, std::uint32_t stated, std::size_t found);
    void checkNextId(FindingCode code, const char* noun, std::uint32_t nextId,
                     const std::vector<PartChild>& parts);
    void takeEntry(ByteSpan bytes);
    void takeFact(std::uint32_t tag, std::uint64_t value);
    void checkFixedValue(const TypeRow& row, std::uint32_t tag, std::uint64_t value);
    void checkTextKind();
    void checkTwice();
    void checkValues();
    void checkProperty(const PropertyEntry& entry, Values values);
    void checkStream(const PropertyEntry& entry, const TypeRow& row, const ValueChild& stream);
    void checkObject(const PropertyEntry& entry, const ValueChild& value);
    void checkList(const PropertyEntry& entry, const TypeRow& row, Values values);
    void checkListValue(const PropertyEntry& entry, std::uint32_t index, std::uint32_t size,
                        const ValueChild& value);
    void addStray(const ValueChild& value);
    bool endsInZero(const PropertyEntry& entry, EntryId stream);

    CompoundChecker& compound;
    FindingList& findings;
    MessageFacts& facts;
    const StorageContents& contents;
    EntryId storage;
    MessageLevel level;
    std::string path; // of the property stream or, without one, of the storage
    Entries entries;  // in the end by tag, then in their order in the stream
    std::uint64_t entryCount = 0;
    std::uint64_t wideTexts = 0;   // properties of 16-bit texts
    std::uint64_t narrowTexts = 0; // of 8-bit texts
    std::optional<std::uint32_t> method;
};

} // namespace olmhost

#endif
