#ifndef OLMKIT_HOST_COMPOUND_DIRECTORY_H
#define OLMKIT_HOST_COMPOUND_DIRECTORY_H

#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/compound/CompoundFormat.h"
#include "host/compound/DirectoryEntry.h"
#include "host/compound/SectorStore.h"

namespace olmhost {

// One storage or stream, distinguished from others that had the same entry before.
struct EntryReference {
    EntryId id = rootEntry;
    std::uint32_t generation = 0;
};

// Where the bytes of a stream are: in mini sectors when it is shorter than miniStreamLimit.
struct StreamPlace {
    SectorNumber firstSector = endOfChain;
    std::uint32_t size = 0; // bytes
};

// The storages and streams of a file. Names are looked up in a hash table, so making one costs the
// same however many there are.
class Directory {
public:
    // Holds the root storage.
    Directory();

    static constexpr EntryReference root() { return {}; }

    // Makes a storage or a stream. One of that name in `parent` is replaced, with all that is in
    // it; the places of its bytes are added to `dropped`. Returns none when `parent` was itself
    // replaced or the name is not valid.
    std::optional<EntryReference> make(EntryReference parent, EntryType type,
                                       std::u16string_view name, std::vector<StreamPlace>& dropped);

    // Returns false once the storage or stream was replaced.
    bool isCurrent(EntryReference reference) const;

    // Sets where the bytes of a stream are; of the root, where the mini stream is.
    void place(EntryReference stream, StreamPlace place);

    void setClassId(const ClassId& id) { rootClassId = id; }

    // Balances the trees and adds the directory to `store`. Nothing is made or placed after that.
    // Returns its first sector.
    SectorNumber finish(SectorStore& store);

private:
    EntryId takeEntry();
    EntryId find(EntryId parent, std::u16string_view name) const;
    std::size_t bucketOf(EntryId parent, std::u16string_view name) const;
    void addToBucket(EntryId id);
    void removeFromBucket(EntryId id);
    void growBuckets();
    void dropContents(EntryId id, std::vector<StreamPlace>& dropped);
    void balance(EntryId storage, std::vector<EntryId>& children);
    EntryId buildTree(std::span<const EntryId> sorted, unsigned int depth, unsigned int redDepth);

    std::deque<DirectoryEntry> entries;
    std::vector<EntryId> buckets;  // first entry of each; a power of two of them
    std::size_t namedCount = 0;    // entries in the buckets: all that are used, except the root
    EntryId firstUnused = noEntry; // linked to the others by `left`
    ClassId rootClassId{};
};

} // namespace olmhost

#endif
