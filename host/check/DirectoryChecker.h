#ifndef OLMKIT_HOST_CHECK_DIRECTORYCHECKER_H
#define OLMKIT_HOST_CHECK_DIRECTORYCHECKER_H

#include <vector>

#include "host/check/CheckedDirectory.h"
#include "host/check/FindingList.h"

namespace olmhost {

// Checks the entries of a directory and the trees that they form (MS-CFB 2.6).
//
// Each entry is taken into one storage once, so trees that run in circles or into each other end
// there. The stack of a walk holds eight bytes for each entry at most.
class DirectoryChecker {
public:
    // All are borrowed. `directory` is loaded and has its members filled in by check().
    DirectoryChecker(const CompoundLayout& layout, FindingList& findings,
                     CheckedDirectory& directory)
        : layout(layout), findings(findings), directory(directory) {}

    void check();

private:
    // An entry on the way from the top of a tree to where the walk is.
    struct Step {
        EntryId id;
        std::uint32_t isRed : 1;
        std::uint32_t blacks : 31; // black entries from the top down to this one
    };

    // The walk of one storage's tree.
    struct Walk {
        EntryId storage;
        std::vector<Step> above; // the entries whose right sides have yet to come
        EntryId previous = noEntry;
        std::uint32_t minHeight = 0x7FFFFFFF; // black entries down to a place without an entry
        std::uint32_t maxHeight = 0;
    };

    void add(FindingCode code, EntryId id, std::string text);
    void checkTrees();
    void checkTree(EntryId storage, std::vector<EntryId>& storages);
    void descend(Walk& walk, EntryId id, const Step* parent);
    bool isLinkGood(EntryId storage, EntryId id);
    void checkOrder(const Walk& walk, EntryId id);
    void checkEntry(EntryId id);
    void checkName(EntryId id, const DirectoryRecord& record);
    void checkRoot(const DirectoryRecord& record);
    void checkStorage(EntryId id, const DirectoryRecord& record);
    void checkStream(EntryId id, const DirectoryRecord& record);
    void checkSize(EntryId id, const DirectoryRecord& record);
    void checkUnused(EntryId id);

    const CompoundLayout& layout;
    FindingList& findings;
    CheckedDirectory& directory;
    std::vector<bool> taken; // by entry: a walk came to it
};

} // namespace olmhost

#endif
