#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDLOADER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDLOADER_H

#include <string>
#include <vector>

#include "host/compound/CompoundReader.h"
#include "host/compound/DirectoryEntry.h"
#include "host/compound/FieldReader.h"

namespace olmhost {

// Fills a CompoundReader from bytes that may be anything.
//
// Each sector is marked when it is used, and none may be used twice: that stops chains that run in
// circles or into each other.
class CompoundLoader {
public:
    // `target` is borrowed; its file is set.
    explicit CompoundLoader(CompoundReader& target) : reader(target) {}

    // Returns false when the file is damaged or not a compound file.
    bool load();

    // Returns what is wrong with it.
    const std::string& failure() const { return reason; }

private:
    // Links of the directory's tree, as in the file (MS-CFB 2.6.1).
    struct Links {
        EntryType type = EntryType::Unused;
        EntryId left = noEntry;
        EntryId right = noEntry;
        EntryId child = noEntry;
    };

    bool fail(const char* text);
    bool takeSector(SectorNumber number);
    bool takeMiniSector(SectorNumber number);
    bool takeChain(SectorNumber first, std::uint64_t count, std::vector<SectorNumber>& chain);

    bool loadHeader();
    bool loadTable(FieldReader& headerIndex, SectorNumber firstIndex, std::uint32_t tableCount);
    bool takeIndex(FieldReader fields, std::size_t places, std::uint32_t tableCount);
    bool loadDirectory();
    bool loadEntry(ByteSpan record);
    bool linkEntries();
    bool linkChildren(EntryId storage, std::vector<EntryId>& storages);
    bool loadMiniStream();
    bool checkStreams();
    bool checkStream(const CompoundReader::Entry& entry);

    CompoundReader& reader;
    std::string reason;
    SectorNumber firstDirectorySector = endOfChain;
    SectorNumber firstMiniTableSector = endOfChain;
    std::uint32_t miniTableCount = 0;
    std::vector<bool> isTaken;     // by sector
    std::vector<bool> isMiniTaken; // by mini sector
    std::vector<bool> isLinked;    // by directory entry
    std::vector<Links> links;      // by directory entry
};

} // namespace olmhost

#endif
