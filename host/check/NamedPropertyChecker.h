#ifndef OLMKIT_HOST_CHECK_NAMEDPROPERTYCHECKER_H
#define OLMKIT_HOST_CHECK_NAMEDPROPERTYCHECKER_H

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/MessageChild.h"

namespace olmhost {

// Checks the storage that says what the properties of 0x8000 and above mean (MS-OXMSG 2.2.3): the
// GUIDs, the entries, the texts, and the buckets by which a name is looked up.
//
// Held are the three streams, up to 17 MB.
class NamedPropertyChecker {
public:
    // Both are borrowed. `storage` is __nameid_version1.0.
    NamedPropertyChecker(CompoundChecker& compound, FindingList& findings, EntryId storage)
        : compound(compound), findings(findings), storage(storage) {}

    // Returns how many properties have a name, so that their ids begin with 0x8000; none when that
    // can't be read.
    std::optional<std::uint32_t> check();

private:
    // One record of the entry stream or of a bucket.
    struct Name {
        std::uint32_t identifier; // a number; of a text, its offset or its checksum
        std::uint16_t kindWord;   // the number of the set, and whether the name is a text
        std::uint16_t index;

        bool isText() const { return (kindWord & 1) != 0; }
        unsigned set() const { return kindWord >> 1; }
    };

    // The streams of the storage, where it has them.
    struct Streams {
        std::optional<EntryId> guids;
        std::optional<EntryId> entries;
        std::optional<EntryId> texts;
        std::array<std::optional<EntryId>, 31> buckets;

        bool take(const MessageChild& child, EntryId id);
    };

    static Name readName(ByteSpan record);
    Streams findStreams();
    std::vector<std::byte> load(const std::optional<EntryId>& stream, std::string_view noun,
                                std::uint64_t limit);
    std::string pathOf(const std::optional<EntryId>& stream) const;
    void checkGuids();
    void checkTexts();
    void checkNames();
    void checkName(std::uint32_t number, Name& name);
    std::optional<std::u16string> textAt(std::uint32_t offset) const;
    void checkBuckets();
    void checkBucket(unsigned bucket, EntryId stream, std::vector<bool>& isInBucket);
    bool belongs(const Name& record, unsigned bucket) const;

    CompoundChecker& compound;
    FindingList& findings;
    EntryId storage;
    Streams streams;
    std::vector<std::byte> guids;
    std::vector<std::byte> texts;
    bool hasAllTexts = true;
    std::vector<Name> names;                  // identifier: of a text, its checksum
    std::vector<std::uint32_t> lowercaseSums; // of the texts in lowercase; 0 for numbers
};

} // namespace olmhost

#endif
