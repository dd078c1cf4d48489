#ifndef OLMKIT_HOST_CHECK_HEADERCHECKER_H
#define OLMKIT_HOST_CHECK_HEADERCHECKER_H

#include <array>
#include <optional>

#include "host/check/FindingList.h"
#include "host/check/PagedFile.h"
#include "host/compound/CompoundFormat.h"
#include "host/compound/FieldReader.h"

namespace olmhost {

// What the header of a compound file says, and how many sectors the file has.
struct CompoundLayout {
    unsigned version = 3;
    std::size_t sectorSize = 512;    // bytes
    SectorNumber sectorCount = 0;    // whole sectors after the header
    SectorNumber fatCount = 0;       // sectors of the FAT
    SectorNumber directoryCount = 0; // sectors of the directory; version 4 alone counts them
    SectorNumber firstDirectorySector = endOfChain;
    SectorNumber firstMiniFatSector = endOfChain;
    SectorNumber miniFatCount = 0;
    SectorNumber firstDifatSector = endOfChain;
    SectorNumber difatCount = 0;
    std::array<SectorNumber, 109> headerDifat{}; // the FAT's first sectors

    std::uint64_t offsetOf(SectorNumber sector) const {
        return (std::uint64_t{sector} + 1) * sectorSize;
    }
};

// Checks the header of a compound file of version 3 or 4 (MS-CFB 2.2).
class HeaderChecker {
public:
    // Both are borrowed.
    HeaderChecker(PagedFile& file, FindingList& findings) : file(file), findings(findings) {}

    // Returns none when the file is not a compound file, or when the size of its sectors is
    // unknown.
    std::optional<CompoundLayout> check();

private:
    void add(FindingCode code, std::string text);
    bool checkSizes(FieldReader& fields);
    void checkCounts(FieldReader& fields);
    void checkLength();
    void checkPadding();

    PagedFile& file;
    FindingList& findings;
    CompoundLayout layout;
};

} // namespace olmhost

#endif
