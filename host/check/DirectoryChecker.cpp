#include "host/check/DirectoryChecker.h"

#include <algorithm>

#include "host/compound/DirectoryEntry.h"
#include "host/compound/EntryName.h"

namespace olmhost {

namespace {

constexpr std::uint64_t maxStreamOfVersion3 = 0x80000000; // bytes

constexpr std::uint8_t recordType(EntryType type) {
    return static_cast<std::uint8_t>(type);
}

bool isBlank(const ClassId& id) {
    return id == ClassId{};
}

} // namespace

void DirectoryChecker::check() {
    checkTrees();
    for (EntryId id = 0; id < directory.count(); ++id) {
        checkEntry(id);
    }
}

void DirectoryChecker::add(FindingCode code, EntryId id, std::string text) {
    findings.add(code, directory.place(id), std::move(text));
}

void DirectoryChecker::checkTrees() {
    taken.assign(directory.count(), false);
    taken[rootEntry] = true;
    std::vector<EntryId> storages = {rootEntry};
    while (!storages.empty()) {
        const EntryId storage = storages.back();
        storages.pop_back();
        checkTree(storage, storages);
    }
}

// Walks the tree of one storage from its first name to its last, and adds the storages in it to
// those that are to be walked.
void DirectoryChecker::checkTree(EntryId storage, std::vector<EntryId>& storages) {
    Walk walk{.storage = storage, .above = {}};
    descend(walk, directory.record(storage).child, nullptr);
    while (!walk.above.empty()) {
        const Step step = walk.above.back();
        walk.above.pop_back();
        checkOrder(walk, step.id);
        directory.addMember(storage, walk.previous, step.id);
        walk.previous = step.id;
        const DirectoryRecord record = directory.record(step.id);
        if (record.isStorage()) {
            storages.push_back(step.id);
        }
        descend(walk, record.right, &step);
    }
    if (walk.minHeight < walk.maxHeight) {
        add(FindingCode::TreeHeight, storage,
            "the paths down its tree have from " + std::to_string(walk.minHeight) + " to " +
                std::to_string(walk.maxHeight) + " black entries");
    }
}

// Goes from `id` to the left as far as there are entries. `parent` links to it; null for the top.
void DirectoryChecker::descend(Walk& walk, EntryId id, const Step* parent) {
    std::uint32_t blacks = parent == nullptr ? 0 : parent->blacks;
    bool isParentRed = parent != nullptr && parent->isRed != 0;
    bool isTop = parent == nullptr;
    while (id != noEntry && isLinkGood(walk.storage, id)) {
        taken[id] = true;
        directory.setParent(id, walk.storage);
        const DirectoryRecord record = directory.record(id);
        const bool isRed = !record.isBlack();
        if (isRed && isTop) {
            add(FindingCode::TreeTopRed, id, "it is red and at the top of its tree");
        }
        if (isRed && isParentRed) {
            add(FindingCode::TreeRedRed, id, "it is red, and so is its parent");
        }
        blacks += isRed ? 0 : 1;
        walk.above.push_back({id, isRed ? 1U : 0U, blacks});
        isParentRed = isRed;
        isTop = false;
        id = record.left;
    }
    walk.minHeight = std::min(walk.minHeight, blacks);
    walk.maxHeight = std::max(walk.maxHeight, blacks);
}

// Whether a link in the tree of `storage` leads to an entry that nothing else links to.
bool DirectoryChecker::isLinkGood(EntryId storage, EntryId id) {
    if (id >= directory.count()) {
        add(FindingCode::EntryLink, storage,
            "its tree leads to entry " + numberText(id) + ", which does not exist");
        return false;
    }
    if (directory.record(id).type == recordType(EntryType::Unused)) {
        add(FindingCode::EntryLink, storage,
            "its tree leads to entry " + std::to_string(id) + ", which is unused");
        return false;
    }
    if (taken[id]) {
        add(FindingCode::EntryShared, storage,
            "its tree leads to entry " + std::to_string(id) + ", which is in a tree already");
        return false;
    }
    return true;
}

void DirectoryChecker::checkOrder(const Walk& walk, EntryId id) {
    if (walk.previous == noEntry) {
        return;
    }
    const DirectoryRecord before = directory.record(walk.previous);
    const DirectoryRecord after = directory.record(id);
    const std::strong_ordering order = compareEntryNames(before.name(), after.name());
    if (order == std::strong_ordering::less) {
        return;
    }
    const bool isEqual = order == std::strong_ordering::equal;
    add(isEqual ? FindingCode::NamesEqual : FindingCode::NamesUnordered, walk.storage,
        "its tree has '" + nameText(before.name()) +
            (isEqual ? "' twice" : "' before '" + nameText(after.name()) + "'"));
}

void DirectoryChecker::checkEntry(EntryId id) {
    const DirectoryRecord record = directory.record(id);
    if (record.type == recordType(EntryType::Unused) && id != rootEntry) {
        checkUnused(id);
        return;
    }
    if (!record.isStorage() && !record.isStream() && id != rootEntry) {
        add(FindingCode::EntryType, id, "its type is " + std::to_string(record.type));
        return;
    }
    checkName(id, record);
    constexpr std::uint8_t maxColour = 1; // 0 is red, 1 is black
    if (record.colour > maxColour) {
        add(FindingCode::EntryColour, id, "its colour is " + std::to_string(record.colour));
    }
    if (!directory.isReached(id)) {
        add(FindingCode::EntryOrphan, id, "no storage has it");
    }
    if (id == rootEntry) {
        checkRoot(record);
    } else if (record.isStream()) {
        checkStream(id, record);
    } else {
        checkStorage(id, record);
    }
}

void DirectoryChecker::checkName(EntryId id, const DirectoryRecord& record) {
    // At least one unit and the terminator.
    if (record.nameSize % 2 != 0 || record.nameSize < 4 || record.nameSize > 64) {
        add(FindingCode::EntryNameLength, id, "its name has " + counted(record.nameSize, "byte"));
        return;
    }
    const std::u16string_view name = record.name();
    if (record.units[name.size()] != 0 || name.find(u'\0') != std::u16string_view::npos) {
        add(FindingCode::EntryNameEnd, id, "its name does not end where its length says");
    }
    const auto rest = std::u16string_view(record.units.data(), record.units.size());
    if (rest.find_first_not_of(u'\0', name.size() + 1) != std::u16string_view::npos) {
        add(FindingCode::EntryNamePadding, id, "there are bytes after the end of its name");
    }
    if (!isValidEntryName(name)) {
        add(FindingCode::EntryNameCharacter, id, "its name has one of the characters / \\ : !");
    }
}

void DirectoryChecker::checkRoot(const DirectoryRecord& record) {
    if (record.type != recordType(EntryType::Root)) {
        add(FindingCode::RootType, rootEntry,
            "the first entry has type " + std::to_string(record.type) + ", not that of the root");
    }
    if (record.name() != u"Root Entry") {
        add(FindingCode::RootName, rootEntry,
            "the root is called '" + nameText(record.name()) + "', not 'Root Entry'");
    }
    if (record.left != noEntry || record.right != noEntry) {
        add(FindingCode::RootSiblings, rootEntry, "the root has siblings");
    }
    if (record.created != 0) {
        add(FindingCode::RootCreated, rootEntry, "the root has a time of creation");
    }
    checkSize(rootEntry, record);
    if (record.state != 0) {
        add(FindingCode::StorageState, rootEntry, "its state bits are " + hexText(record.state));
    }
}

void DirectoryChecker::checkStorage(EntryId id, const DirectoryRecord& record) {
    if (record.type == recordType(EntryType::Root)) {
        add(FindingCode::RootTwice, id, "it has the type of the root");
    }
    if (record.firstSector != 0 || record.size != 0) {
        add(FindingCode::StorageStart, id, "it is a storage and has a first sector or a size");
    }
    if (record.state != 0) {
        add(FindingCode::StorageState, id, "its state bits are " + hexText(record.state));
    }
}

void DirectoryChecker::checkStream(EntryId id, const DirectoryRecord& record) {
    if (record.child != noEntry) {
        add(FindingCode::StreamChild, id, "it is a stream and has a child");
    }
    if (!isBlank(record.classId)) {
        add(FindingCode::StreamClassId, id, "it is a stream and has a class id");
    }
    if (record.state != 0) {
        add(FindingCode::StreamState, id,
            "it is a stream and has state bits: " + hexText(record.state));
    }
    if (record.created != 0 || record.modified != 0) {
        add(FindingCode::StreamTimes, id, "it is a stream and has time stamps");
    }
    checkSize(id, record);
}

// The size of a stream or, in the root's entry, of the mini stream.
void DirectoryChecker::checkSize(EntryId id, const DirectoryRecord& record) {
    if (layout.version != 3) {
        return;
    }
    // Some writers leave the upper half as it was, so readers of version 3 leave it out.
    if (record.size >> 32 != 0) {
        add(FindingCode::StreamSizeHigh, id, "the upper half of its size is not zero");
    }
    if ((record.size & 0xFFFFFFFF) > maxStreamOfVersion3) {
        add(FindingCode::StreamSize, id,
            "it has " + counted(record.size & 0xFFFFFFFF, "byte") +
                ", more than a stream may have in version 3");
    }
}

// All of its bytes are zero but those of the links.
void DirectoryChecker::checkUnused(EntryId id) {
    constexpr std::size_t linksStart = 68; // bytes
    constexpr std::size_t linksEnd = 80;
    const ByteSpan bytes = directory.bytes(id);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isLink = i >= linksStart && i < linksEnd;
        if (bytes[i] != (isLink ? std::byte{0xFF} : std::byte{0})) {
            findings.add(FindingCode::UnusedEntry, "entry " + std::to_string(id),
                         "it is unused and not blank");
            return;
        }
    }
}

} // namespace olmhost
