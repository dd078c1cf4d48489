#ifndef OLMKIT_HOST_CHECK_PROPERTYSTREAMCHECKER_H
#define OLMKIT_HOST_CHECK_PROPERTYSTREAMCHECKER_H

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

// An entry of a property stream.
struct PropertyEntry {
    std::uint32_t tag;
    std::uint32_t size;  // what it says of a value that is not in it
    std::uint32_t order; // in the stream, from 0

    std::uint16_t type() const { return static_cast<std::uint16_t>(tag); }
    bool isList() const { return (type() & multipleValues) != 0; }
};

// Checks the property stream of one storage of a message (MS-OXMSG 2.4): its header, and each entry
// by itself.
class PropertyStreamChecker {
public:
    // All are borrowed. `contents` is what `storage` contains. `facts` is filled in where the
    // properties of the top level state them.
    PropertyStreamChecker(CompoundChecker& compound, FindingList& findings, MessageFacts& facts,
                          const StorageContents& contents, EntryId storage, MessageLevel level);

    // Returns true when the stream is there and was read, so that its entries can be compared with
    // the values.
    bool check();

    // The entries in the order of the stream, valid as long as this object; those above
    // StorageContents::maxLookedAt are left out.
    std::vector<PropertyEntry>& entries() { return held; }

    // All of them.
    std::uint64_t count() const { return entryCount; }

    // PidTagAttachMethod; none when the storage doesn't say.
    std::optional<std::uint32_t> attachMethod() const { return method; }

private:
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

    CompoundChecker& compound;
    FindingList& findings;
    MessageFacts& facts;
    const StorageContents& contents;
    MessageLevel level;
    std::string path; // of the stream or, without one, of the storage
    std::vector<PropertyEntry> held;
    std::uint64_t entryCount = 0;
    std::uint64_t wideTexts = 0;   // properties of 16-bit texts
    std::uint64_t narrowTexts = 0; // of 8-bit texts
    std::optional<std::uint32_t> method;
};

} // namespace olmhost

#endif
