#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDLOADER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDLOADER_H

#include <string>
#include <vector>

#include "host/compound/CompoundReader.h"
#include "host/compound/DirectoryEntry.h"
#include "host/compound/FieldReader.h"

namespace olmhost {

// Fills a CompoundReader from bytes that nobody has looked at yet.
//
// Each sector is marked when something takes it, and nothing may take it twice: chains that run in
// circles or into each other end there.
class CompoundLoader {
public:
    // `target` is borrowed; its file is set.
    explicit CompoundLoader(CompoundReader& target) : reader(target) {}

    // False when the file is damaged or no compound file.
    bool load();

    // What is wrong with it.
    const std::string& failure() const { return reason; }

private:
    // Links of the directory's tree, as they stand in the file.
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
