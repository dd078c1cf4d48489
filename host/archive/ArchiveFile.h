#ifndef OLMKIT_HOST_ARCHIVE_ARCHIVEFILE_H
#define OLMKIT_HOST_ARCHIVE_ARCHIVEFILE_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/archive/OpenFailure.h"
#include "host/archive/ReadAccount.h"
#include "host/stream/EntryFault.h"
#include "host/stream/Handle.h"
#include "host/stream/Limits.h"

namespace olmhost {

class Archive;
class ArchiveBytes;
class ArchiveContents;

// The raw stream of an archive's file: the handle that the module opens.
//
// Its `open` with OpenArchive creates an Archive, stores it as the handle and keeps it until the
// module closes it or the ArchiveFile is destroyed, whichever is first. The file is not touched
// before that. The module's `close` of the raw stream itself does nothing: its creator owns it.
// Serves one thread; several ArchiveFiles of one file are independent of each other.
class ArchiveFile final : public Handle {
public:
    // `path`: bytes as the file system has them.
    explicit ArchiveFile(std::string path, const Limits& limits = {});
    ~ArchiveFile() override;

    // The same file as `first`, which is open, for another thread. Shares the directory of `first`
    // instead of reading it again. Neither has to outlive the other; no thread may use `first`
    // during the call.
    explicit ArchiveFile(const ArchiveFile& first);
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    // Returns why the last open failed; kind None when it didn't.
    const OpenFailure& failure() const { return openFailure; }

    // Returns the faults of entries: one per entry and kind, in the order in which they were found.
    // Kept after the archive's close. For EntryFault::noEntry one per text, which has the name.
    const std::vector<EntryFault>& faults() const { return entryFaults; }

    // Returns true between a successful open and the archive's close.
    bool isOpen() const { return archive != nullptr; }

    // Returns the archive's directory, which is valid until the archive's close.
    // REQUIRES: isOpen()
    const ArchiveContents& contents() const;

    // Opens row `index` for reading. The caller calls end() of the handle when done. Returns null,
    // with a fault added, when it can't be opened.
    Handle* openEntry(std::uint64_t index);

    // Reads what has not been read of row `index`, so that its checksum is compared. Adds a fault
    // when it can't be read or is wrong.
    // REQUIRES: isOpen()
    void checkRest(std::uint64_t index);

    // Compares the local header of row `index` with the directory. Adds a fault when they differ.
    // REQUIRES: isOpen()
    void checkHeader(std::uint64_t index);

    // Returns the size of the archive's file in bytes; 0 while not open.
    std::uint64_t size() const;

    // Returns the bytes inflated for this archive so far, repeated ones counted again; 0 while not
    // open. Shows what seeking costs.
    std::uint64_t inflatedBytes() const;

    // Adds a fault unless the same kind was found on the same entry, or reading the entry failed.
    void addFault(FaultKind kind, std::uint64_t entryIndex, const std::string& text);

    // From now on faults, and entries that are requested by name, are added to `newAccount` too,
    // including faults that were known before. It is borrowed until the next call; null ends it.
    void keepAccount(ReadAccount* newAccount) { account = newAccount; }

    // Adds a member that is being requested to the account. Returns null when no account is kept.
    std::shared_ptr<MemberRead> addMember(std::string_view name);

    // From now on `newWatch` is notified of the tags of entries that are read as documents. It is
    // borrowed until the next call; null ends it.
    void keepWatch(TagWatch* newWatch) { watch = newWatch; }
    TagWatch* tagWatch() override { return watch; }

    // Ends the open archive and every handle that was opened from it.
    void closeArchive();

    void end() override {}
    const Limits& limits() const override { return bounds; }

private:
    static std::int32_t openRecord(HostStream** handle, std::uint32_t code, void* request,
                                   std::uint32_t mode) noexcept;
    std::int32_t openArchive(HostStream** handle, void* request);

    std::string path;
    Limits bounds;
    OpenFailure openFailure;
    std::vector<EntryFault> entryFaults;
    std::set<std::tuple<std::uint64_t, FaultKind, std::string>> knownFaults; // text: noEntry only
    ReadAccount* account = nullptr;
    TagWatch* watch = nullptr;
    std::unique_ptr<Archive> archive;

    // Of a file that shares its directory, until it is opened.
    std::shared_ptr<ArchiveContents> sharedContents;
    std::unique_ptr<ArchiveBytes> bytes;
};

} // namespace olmhost

#endif
