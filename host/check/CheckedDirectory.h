#ifndef OLMKIT_HOST_CHECK_CHECKEDDIRECTORY_H
#define OLMKIT_HOST_CHECK_CHECKEDDIRECTORY_H

#include <string>
#include <vector>

#include "host/check/DirectoryRecord.h"
#include "host/check/HeaderChecker.h"
#include "host/check/PagedFile.h"
#include "host/compound/CompoundFormat.h"

namespace olmhost {

// The directory of a file that is being checked: its entries, and which storage each is in.
//
// The entries stay in the file; held are twelve bytes for each, which DirectoryChecker fills in.
class CheckedDirectory {
public:
    // `file` and `layout` are borrowed.
    CheckedDirectory(PagedFile& file, const CompoundLayout& layout) : file(file), layout(layout) {}

    // The directory is in `sectors`, which lie in the file.
    void load(std::vector<SectorNumber> sectors);

    std::uint32_t count() const { return static_cast<std::uint32_t>(places.size()); }

    // REQUIRES: id < count(), as for all functions that take an entry.
    ByteSpan bytes(EntryId id) const; // valid until the file is read again
    DirectoryRecord record(EntryId id) const { return DirectoryRecord(bytes(id)); }

    // Puts an entry, which is in no storage yet, into a storage. addMember() has to follow.
    void setParent(EntryId id, EntryId storage) { places[id].parent = storage; }

    // Makes an entry the member after `previous` or, when that is noEntry, the first.
    void addMember(EntryId storage, EntryId previous, EntryId id);

    // Returns whether it is the root or a member of a storage.
    bool isReached(EntryId id) const { return id == rootEntry || places[id].parent != noEntry; }

    // The members of a storage in the order of its tree; noEntry at the end.
    EntryId firstMember(EntryId storage) const { return places[storage].firstMember; }
    EntryId nextMember(EntryId id) const { return places[id].nextMember; }

    // Returns the names of an entry and of the storages that it is in: "/" for the root, "/a/b". Of
    // an entry in many storages the outer ones are left out.
    std::string path(EntryId id) const;

    // Returns what findings name an entry by: "entry 5, '/a/b'".
    std::string place(EntryId id) const;

private:
    struct Place {
        EntryId parent = noEntry;
        EntryId firstMember = noEntry;
        EntryId nextMember = noEntry;
    };

    PagedFile& file;
    const CompoundLayout& layout;
    std::vector<SectorNumber> directorySectors;
    std::vector<Place> places; // by entry
};

} // namespace olmhost

#endif
