#ifndef OLMKIT_HOST_ARCHIVE_STOREDENTRY_H
#define OLMKIT_HOST_ARCHIVE_STOREDENTRY_H

#include "host/archive/EntryData.h"

namespace olmhost {

// An entry that is stored without compression.
class StoredEntry final : public EntryData {
public:
    StoredEntry(ArchiveBytes& bytes, ArchiveFile& file, std::uint64_t index, const EntryInfo& info);

    std::size_t read(std::uint64_t position, void* buffer, std::size_t size) override;
};

} // namespace olmhost

#endif
