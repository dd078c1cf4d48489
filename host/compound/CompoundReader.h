#ifndef OLMKIT_HOST_COMPOUND_COMPOUNDREADER_H
#define OLMKIT_HOST_COMPOUND_COMPOUNDREADER_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

// A compound file (MS-CFB, version 3) in memory: its storages and streams.
//
// The bytes may be anything. open() checks the header, the tables, the directory and the chain of
// every stream, and uses each sector only once; so it costs time and memory in proportion to the
// file's size, and an opened file can be read without a failure.
class CompoundReader {
public:
    struct Entry {
        std::u16string name;
        bool isStorage = false;
        std::uint32_t size = 0; // bytes of a stream
        SectorNumber firstSector = endOfChain;
        std::vector<EntryId> children; // of a storage, in the order of the directory's tree
    };

    // `file` is borrowed and must outlive the reader. Returns null when it is not a compound file
    // or is damaged, with the reason in `failure`: human-readable, part of a sentence.
    static std::unique_ptr<CompoundReader> open(ByteSpan file, std::string& failure);

    // Returns the entry `id` of the directory; an unused one is a stream without a name. The root
    // storage is rootEntry.
    const Entry& entry(EntryId id) const { return entries[id]; }

    // Passes the bytes of the stream `id` to `take`, at most the first `limit`, in pieces of any
    // size. A storage has none.
    void read(EntryId id, const std::function<void(ByteSpan)>& take,
              std::size_t limit = largestStream) const;

    // Returns the same bytes in one piece.
    std::vector<std::byte> bytes(EntryId id, std::size_t limit = largestStream) const;

private:
    friend class CompoundLoader;

    CompoundReader() = default;

    ByteSpan sector(SectorNumber number) const;
    ByteSpan miniSector(SectorNumber number) const;
    SectorNumber numberAt(const std::vector<SectorNumber>& table, SectorNumber place) const;

    ByteSpan file;
    SectorNumber sectorCount = 0;
    std::vector<SectorNumber> tableSectors;     // of the FAT
    std::vector<SectorNumber> miniTableSectors; // of the mini FAT
    std::vector<SectorNumber> miniStream;       // the sectors that hold the mini sectors
    std::vector<Entry> entries;
};

} // namespace olmhost

#endif
