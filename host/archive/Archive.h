#ifndef OLMKIT_HOST_ARCHIVE_ARCHIVE_H
#define OLMKIT_HOST_ARCHIVE_ARCHIVE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filter/boundary/Archive.h"
#include "host/archive/ArchiveBytes.h"
#include "host/archive/ArchiveContents.h"
#include "host/archive/EntryStream.h"
#include "host/archive/InflatedEntries.h"
#include "host/archive/OpenFailure.h"

namespace olmhost {

class ArchiveFile;

// An opened archive: the directory that the module reads, from which it opens the entries.
//
// The ArchiveFile owns it, and it owns the streams opened from it: its close ends them all. Holds
// 64 bytes for each row, and the contents, which everyone who has the archive open can share.
class Archive final : public ArchiveDirectory {
public:
    // Returns null, with `failure` filled, when it can't be opened. `owner` must outlive the
    // archive.
    static std::unique_ptr<Archive> open(ArchiveFile& owner, const std::string& path,
                                         OpenFailure& failure);

    // The archive with these contents, whose file is read through `bytes`.
    Archive(ArchiveFile& owner, std::unique_ptr<ArchiveBytes> bytes,
            std::shared_ptr<ArchiveContents> contents);
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    ArchiveFile& file() { return owner; }

    // Returns the handle for the module.
    HostStream* handle() { return &stream; }

    // What another Archive can share, also on another thread.
    const std::shared_ptr<ArchiveContents>& sharedContents() const { return contents; }
    const ArchiveBytes& fileBytes() const { return *bytes; }

    // Opens the entry that the request names. Returns null, with a fault added, when it can't be
    // opened.
    EntryStream* openMember(const MemberOpenRequest& request);

    // Reads what has not been read of row `index`, so that its checksum is compared. Adds a fault
    // when it can't be read or is wrong.
    void checkRest(std::uint64_t index);

    // Compares the local header of row `index` with the directory. Adds a fault when they differ.
    void checkHeader(std::uint64_t index);

    // Deletes a stream that openMember() returned.
    void closeEntry(const EntryStream& entry);

    // Returns the bytes inflated so far, repeated ones counted again.
    std::uint64_t inflatedBytes() const { return inflatedEntries.inflatedBytes(); }

private:
    // The operations of the record.
    static Archive& of(HostStream* record);
    static std::int32_t closeRecord(HostStream* record) noexcept;
    static std::int32_t openRecord(HostStream** handle, std::uint32_t code, void* request,
                                   std::uint32_t mode) noexcept;

    std::optional<std::uint64_t> findRow(std::string_view name);
    void refuse(FaultKind kind, std::uint64_t index, const std::string& text);
    bool mayOpen(std::uint64_t index, const EntryInfo& info);
    bool exceedsLimit(std::uint64_t index, const EntryInfo& info);
    bool locate(std::uint64_t index, EntryInfo& info, std::string& difference);
    EntryStream* openEntry(std::uint64_t index);
    std::shared_ptr<EntryData> openData(std::uint64_t index, EntryInfo& info);

    ArchiveFile& owner;
    std::unique_ptr<ArchiveBytes> bytes;
    std::shared_ptr<ArchiveContents> contents;
    std::vector<ArchiveEntry> rows;
    InflatedEntries inflatedEntries;
    std::shared_ptr<EntryData> openedLast;
    std::shared_ptr<MemberRead> requested; // by openMember(), while an account is kept
    std::vector<std::unique_ptr<EntryStream>> streams;
};

} // namespace olmhost

#endif
