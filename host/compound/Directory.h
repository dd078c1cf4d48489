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

// One storage or stream, told apart from others that had the same entry before.
struct EntryReference {
    EntryId id = rootEntry;
    std::uint32_t generation = 0;
};

// Where the bytes of a stream lie: in mini sectors when it is shorter than miniStreamLimit.
struct StreamPlace {
    SectorNumber firstSector = endOfChain;
    std::uint32_t size = 0; // bytes
};

// The storages and streams of a file. Names are found through a table, so making one costs the
// same however many there are.
class Directory {
public:
    // Holds the root storage.
    Directory();

    static constexpr EntryReference root() { return {}; }

    // Makes a storage or a stream. One of that name in `parent` gives way, with all that lies in
    // it; the places of the bytes that are lost with it are added to `dropped`. Nothing when
    // `parent` has given way itself or the name can't stand in a directory.
    std::optional<EntryReference> make(EntryReference parent, EntryType type,
                                       std::u16string_view name, std::vector<StreamPlace>& dropped);

    // False once the storage or stream has given way to another.
    bool isCurrent(EntryReference reference) const;

    // Tells where the bytes of a stream are; of the root, where the mini stream is.
    void place(EntryReference stream, StreamPlace place);

    void setClassId(const ClassId& id) { rootClassId = id; }

    // Balances the trees and adds the directory to `store`; nothing is made or placed behind
    // that. Gives its first sector.
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
    std::size_t namedCount = 0;    // entries in the buckets: all that are used, save the root
    EntryId firstUnused = noEntry; // the others behind it through `left`
    ClassId rootClassId{};
};

} // namespace olmhost

#endif
