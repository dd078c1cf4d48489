#include "host/compound/Directory.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "host/compound/EntryName.h"
#include "host/compound/SectorChain.h"

namespace olmhost {

namespace {

constexpr std::size_t firstBucketCount = 64;

} // namespace

Directory::Directory() : buckets(firstBucketCount, noEntry) {
    DirectoryEntry& entry = entries.emplace_back();
    entry.type = EntryType::Root;
    entry.setName(u"Root Entry");
}

std::optional<EntryReference> Directory::make(EntryReference parent, EntryType type,
                                              std::u16string_view name,
                                              std::vector<StreamPlace>& dropped) {
    if (!isCurrent(parent) || !isValidEntryName(name)) {
        return std::nullopt;
    }
    EntryId id = find(parent.id, name);
    if (id != noEntry) {
        dropContents(id, dropped);
        entries[id].setName(name);
    } else {
        id = takeEntry();
        entries[id].setName(name);
        entries[id].parent = parent.id;
        entries[id].left = entries[parent.id].child;
        entries[parent.id].child = id;
        addToBucket(id);
    }
    entries[id].type = type;
    return EntryReference{id, entries[id].generation};
}

bool Directory::isCurrent(EntryReference reference) const {
    return entries[reference.id].generation == reference.generation;
}

void Directory::place(EntryReference stream, StreamPlace place) {
    assert(isCurrent(stream));
    entries[stream.id].firstSector = place.firstSector;
    entries[stream.id].size = place.size;
}

SectorNumber Directory::finish(SectorStore& store) {
    std::vector<EntryId> children;
    for (EntryId id = 0; id < entries.size(); ++id) {
        if (entries[id].type == EntryType::Storage || entries[id].type == EntryType::Root) {
            balance(id, children);
        }
    }

    SectorChain chain(store);
    constexpr ClassId noClassId{};
    for (EntryId id = 0; id < entries.size(); ++id) {
        chain.append(entries[id].encoded(id == rootEntry ? rootClassId : noClassId));
    }
    for (std::size_t i = entries.size(); i % entriesPerSector != 0; ++i) {
        chain.append(DirectoryEntry{}.encoded(noClassId));
    }
    return chain.close();
}

EntryId Directory::takeEntry() {
    if (firstUnused == noEntry) {
        entries.emplace_back();
        return static_cast<EntryId>(entries.size() - 1);
    }
    const EntryId id = firstUnused;
    firstUnused = entries[id].left;
    return id;
}

EntryId Directory::find(EntryId parent, std::u16string_view name) const {
    for (EntryId id = buckets[bucketOf(parent, name)]; id != noEntry;
         id = entries[id].nextInBucket) {
        if (entries[id].parent == parent &&
            std::is_eq(compareEntryNames(entries[id].name(), name))) {
            return id;
        }
    }
    return noEntry;
}

std::size_t Directory::bucketOf(EntryId parent, std::u16string_view name) const {
    constexpr std::size_t spread = 0x9E3779B1; // so that neighbours are far apart
    return (hashEntryName(name) ^ (parent * spread)) & (buckets.size() - 1);
}

void Directory::addToBucket(EntryId id) {
    if (namedCount == buckets.size()) {
        growBuckets();
    }
    EntryId& bucket = buckets[bucketOf(entries[id].parent, entries[id].name())];
    entries[id].nextInBucket = bucket;
    bucket = id;
    ++namedCount;
}

void Directory::removeFromBucket(EntryId id) {
    EntryId* link = &buckets[bucketOf(entries[id].parent, entries[id].name())];
    while (*link != id) {
        link = &entries[*link].nextInBucket;
    }
    *link = entries[id].nextInBucket;
    --namedCount;
}

void Directory::growBuckets() {
    std::vector<EntryId> formerBuckets(2 * buckets.size(), noEntry);
    formerBuckets.swap(buckets);
    for (EntryId id : formerBuckets) {
        while (id != noEntry) {
            const EntryId following = entries[id].nextInBucket;
            EntryId& bucket = buckets[bucketOf(entries[id].parent, entries[id].name())];
            entries[id].nextInBucket = bucket;
            bucket = id;
            id = following;
        }
    }
}

// Leaves the entry without contents and makes every entry below it unused.
void Directory::dropContents(EntryId id, std::vector<StreamPlace>& dropped) {
    std::vector<EntryId> pending{id};
    while (!pending.empty()) {
        const EntryId current = pending.back();
        pending.pop_back();
        DirectoryEntry& entry = entries[current];
        for (EntryId child = entry.child; child != noEntry; child = entries[child].left) {
            pending.push_back(child);
        }
        if (entry.firstSector != endOfChain) {
            dropped.push_back({entry.firstSector, entry.size});
        }
        entry.child = noEntry;
        entry.firstSector = endOfChain;
        entry.size = 0;
        ++entry.generation;
        if (current != id) {
            removeFromBucket(current);
            entry.type = EntryType::Unused;
            entry.left = firstUnused;
            firstUnused = current;
        }
    }
}

// Turns the list of a storage's children into a tree. `children` is working memory.
void Directory::balance(EntryId storage, std::vector<EntryId>& children) {
    children.clear();
    for (EntryId id = entries[storage].child; id != noEntry; id = entries[id].left) {
        children.push_back(id);
    }
    std::sort(children.begin(), children.end(), [this](EntryId left, EntryId right) {
        return std::is_lt(compareEntryNames(entries[left].name(), entries[right].name()));
    });
    // All levels except the last are full. With red nodes in the last one, when it has gaps, every
    // path down has the same number of black ones.
    const unsigned int redDepth = std::bit_width(children.size() + 1) - 1;
    entries[storage].child = buildTree(children, 0, redDepth);
}

EntryId Directory::buildTree(std::span<const EntryId> sorted, unsigned int depth,
                             unsigned int redDepth) {
    if (sorted.empty()) {
        return noEntry;
    }
    const std::size_t middle = sorted.size() / 2;
    DirectoryEntry& entry = entries[sorted[middle]];
    entry.isRed = depth == redDepth;
    entry.left = buildTree(sorted.first(middle), depth + 1, redDepth);
    entry.right = buildTree(sorted.subspan(middle + 1), depth + 1, redDepth);
    return sorted[middle];
}

} // namespace olmhost
