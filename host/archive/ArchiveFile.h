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

// The raw stream of an archive's file: the handle that the module is given to open.
//
// Its `open` with OpenArchive makes an Archive, puts it in the handle's place and keeps it until
// the module closes it or the ArchiveFile ends, whichever is first. The file is not touched before
// that. The module's `close` of the raw stream itself does nothing: whoever made it owns it.
// Serves one thread; several ArchiveFiles on one file are independent of each other.
class ArchiveFile final : public Handle {
public:
    // `path` as the file system takes it.
    explicit ArchiveFile(std::string path, const Limits& limits = {});
    ~ArchiveFile() override;

    // The same file as that of `first`, which is open, for another thread: its opening reads no
    // directory again but shares that of `first`. Neither has to outlive the other; no thread may
    // use `first` during the call.
    explicit ArchiveFile(const ArchiveFile& first);
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    // Why the last open failed; kind None when none did.
    const OpenFailure& failure() const { return openFailure; }

    // What was found wrong with entries: one per entry and kind, in the order of finding. Stays
    // after the archive's close. For EntryFault::noEntry one per text, and the text holds the name.
    const std::vector<EntryFault>& faults() const { return entryFaults; }

    // True between a successful open and the archive's close.
    bool isOpen() const { return archive != nullptr; }

    // The archive's directory. Valid until the archive's close.
    // REQUIRES: isOpen()
    const ArchiveContents& contents() const;

    // Opens row `index` for reading. Null, with a fault noted, when it can't be opened. Its end()
    // gives it back.
    Handle* openEntry(std::uint64_t index);

    // Bytes of the archive's file; 0 while not open.
    std::uint64_t size() const;

    // Bytes that were inflated for this archive so far, repeated ones counted again; 0 while not
    // open. Shows what seeking costs.
    std::uint64_t inflatedBytes() const;

    // Adds a fault unless the same kind was found on the same entry.
    void addFault(FaultKind kind, std::uint64_t entryIndex, const std::string& text);

    // From now on faults, and entries that are asked for by name, are entered in `newAccount` too,
    // known faults again. It is borrowed until the next call; null ends it.
    void keepAccount(ReadAccount* newAccount) { account = newAccount; }

    // The entry in the account for a member that is being asked for; null when none is kept.
    std::shared_ptr<MemberRead> addMember(std::string_view name);

    // From now on the tags of entries that are read as documents are told to `newWatch`. It is
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

    // Made ready for the opening of a file that shares its directory.
    std::shared_ptr<ArchiveContents> sharedContents;
    std::unique_ptr<ArchiveBytes> bytes;
};

} // namespace olmhost

#endif
