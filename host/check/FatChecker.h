#ifndef OLMKIT_HOST_CHECK_FATCHECKER_H
#define OLMKIT_HOST_CHECK_FATCHECKER_H

#include <unordered_set>
#include <vector>

#include "host/check/AllocationTable.h"
#include "host/check/FindingList.h"
#include "host/check/HeaderChecker.h"
#include "host/check/PagedFile.h"

namespace olmhost {

// Checks the DIFAT, which lists the sectors of the FAT (MS-CFB 2.5), and the FAT's own sectors
// (2.3), and loads the FAT.
class FatChecker {
public:
    // All are borrowed. `fat` is filled by check().
    FatChecker(PagedFile& file, const CompoundLayout& layout, FindingList& findings,
               AllocationTable& fat)
        : file(file), layout(layout), findings(findings), fat(fat) {}

    void check();

private:
    void readDifat();
    void readDifatSector(SectorNumber sector, SectorNumber& next);
    void take(SectorNumber listed);
    void checkDifat();
    void claimAll(const std::vector<SectorNumber>& sectors, SectorNumber mark, const char* noun);
    void checkMarks();
    void checkRangeLock();

    PagedFile& file;
    const CompoundLayout& layout;
    FindingList& findings;
    AllocationTable& fat;
    std::vector<SectorNumber> difatSectors; // in the order of their chain
    std::vector<SectorNumber> fatSectors;   // endOfChain in the place of one that is lost
    std::unordered_set<SectorNumber> seen;  // all of these
    bool hasTail = false;                   // the DIFAT lists more than the header counts
};

} // namespace olmhost

#endif
