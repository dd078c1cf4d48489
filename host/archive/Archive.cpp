#include "host/archive/Archive.h"

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/archive/ArchiveFile.h"
#include "host/archive/StoredEntry.h"

namespace olmhost {

namespace {

// Where a row keeps the offset of its entry's data, once it is known: in the host's own bytes.
constexpr std::size_t dataOffsetPlace = 2;

// The index in a MemberOpenRequest whose name fills the whole field: the terminator overwrites it.
constexpr std::uint64_t indexUnderLongName = 0xFFFFFFFFFFFFFF00;

// Reading, writing and seeking mean nothing to a directory.
std::int32_t refuseRead(HostStream* /*handle*/, void* /*buffer*/, std::uint32_t /*size*/,
                        std::uint32_t* bytesRead) noexcept {
    *bytesRead = 0;
    return Handle::statusFailed;
}

std::int32_t refuseWrite(HostStream* /*handle*/, const void* /*data*/, std::uint32_t /*size*/,
                         std::uint32_t* bytesWritten) noexcept {
    *bytesWritten = 0;
    return Handle::statusFailed;
}

std::int32_t refuseSeek(HostStream* /*handle*/, std::int64_t /*offset*/,
                        std::int32_t /*origin*/) noexcept {
    return Handle::statusFailed;
}

std::string quoted(std::string_view name) {
    return std::string("\"").append(name).append("\"");
}

} // namespace

std::unique_ptr<Archive> Archive::open(ArchiveFile& owner, const std::string& path,
                                       OpenFailure& failure) {
    auto bytes = ArchiveBytes::open(path, failure);
    if (bytes == nullptr) {
        return nullptr;
    }
    auto contents = ArchiveContents::open(*bytes, failure);
    if (contents == nullptr) {
        return nullptr;
    }
    if (contents->isLocked()) {
        failure = {OpenFailureKind::Encrypted, "is encrypted: its documents need a password"};
        return nullptr;
    }
    return std::make_unique<Archive>(owner, std::move(bytes), std::move(contents));
}

Archive::Archive(ArchiveFile& owner, std::unique_ptr<ArchiveBytes> bytes,
                 std::shared_ptr<ArchiveContents> sharedContents)
    : ArchiveDirectory{{closeRecord, refuseRead, refuseWrite, refuseSeek, Handle::refuseReserved,
                        Handle::refuseReserved, openRecord},
                       nullptr,
                       0,
                       nullptr},
      owner(owner), bytes(std::move(bytes)), contents(std::move(sharedContents)),
      rows(contents->makeRows()), inflatedEntries(*this->bytes, owner) {
    entries = rows.data();
    entryCount = rows.size();
    namePool = contents->namePool();
}

EntryStream* Archive::openMember(const MemberOpenRequest& request) {
    const std::string_view name(request.name, strnlen(request.name, sizeof request.name));
    const auto index = static_cast<std::uint64_t>(request.entryIndex);
    std::optional<std::uint64_t> row;
    if (request.entryIndex == MEMBER_BY_NAME) {
        requested = owner.addMember(name);
        row = findRow(name);
    } else if (name.size() == sizeof request.name && index == indexUnderLongName) {
        requested = owner.addMember(name);
        refuse(FaultKind::CannotOpen, EntryFault::noEntry,
               "the name is too long to look up: " + quoted(name));
    } else if (index < entryCount) {
        row = index;
    } else {
        refuse(FaultKind::CannotOpen, EntryFault::noEntry,
               "there is no entry " + std::to_string(index));
    }
    EntryStream* const stream = row ? openEntry(*row) : nullptr;
    requested.reset();
    return stream;
}

std::optional<std::uint64_t> Archive::findRow(std::string_view name) {
    const auto row = contents->find(name);
    if (!row) {
        refuse(FaultKind::CannotOpen, EntryFault::noEntry,
               "there is no file named " + quoted(name));
    }
    return row;
}

// Adds the fault that keeps the requested entry from being opened.
void Archive::refuse(FaultKind kind, std::uint64_t index, const std::string& text) {
    owner.addFault(kind, index, text);
    if (requested != nullptr) {
        requested->fault = text;
    }
}

EntryStream* Archive::openEntry(std::uint64_t index) {
    EntryInfo info = contents->info(index);
    if (requested != nullptr) {
        requested->entryIndex = index;
        requested->size = info.size;
    }
    std::shared_ptr<EntryData> data = openData(index, info);
    if (data == nullptr) {
        return nullptr;
    }
    streams.push_back(std::make_unique<EntryStream>(*this, index, std::move(data), requested));
    return streams.back().get();
}

// Returns null, with a fault added, when the entry can't be read.
std::shared_ptr<EntryData> Archive::openData(std::uint64_t index, EntryInfo& info) {
    std::string difference;
    if (!mayOpen(index, info) || !locate(index, info, difference)) {
        return nullptr;
    }
    if (info.method == MethodDeflated && (info.size != 0 || info.compressedSize != 0)) {
        openedLast = inflatedEntries.open(index, info);
    } else {
        openedLast = std::make_shared<StoredEntry>(*bytes, owner, index, info);
    }
    if (!difference.empty()) {
        openedLast->report(FaultKind::OtherHeader, difference);
    }
    return openedLast;
}

void Archive::checkRest(std::uint64_t index) {
    std::shared_ptr<EntryData> data = openedLast;
    if (data == nullptr || data->entryIndex() != index) {
        EntryInfo info = contents->info(index);
        data = openData(index, info);
    }
    if (data != nullptr) {
        data->checkRest();
    }
}

// Returns false, with a fault added, when the entry can't be read.
bool Archive::mayOpen(std::uint64_t index, const EntryInfo& info) {
    if (contents->name(index).ends_with('/')) {
        refuse(FaultKind::CannotOpen, index, "it is a directory");
    } else if (info.isEncrypted) {
        refuse(FaultKind::Encrypted, index, "it is encrypted");
    } else if (info.method != MethodStored && info.method != MethodDeflated) {
        refuse(FaultKind::CannotOpen, index,
               "it is compressed with a method that is not supported: compression method " +
                   std::to_string(info.method));
    } else {
        return !exceedsLimit(index, info);
    }
    return false;
}

// Returns true, with a fault added, when the entry's declared size exceeds a limit. No entry is
// read further than its declared size.
bool Archive::exceedsLimit(std::uint64_t index, const EntryInfo& info) {
    const Limits& limits = owner.limits();
    const std::string size = "it has " + std::to_string(info.size) + " bytes";
    const std::uint64_t ratio = info.size / std::max<std::uint64_t>(info.compressedSize, 1);
    if (info.size > limits.largestEntry) {
        refuse(FaultKind::LimitReached, index,
               size + ", more than the limit of " + std::to_string(limits.largestEntry));
        return true;
    }
    if (info.size > limits.ratioFrom && ratio > limits.largestRatio) {
        refuse(FaultKind::LimitReached, index,
               size + " out of " + std::to_string(info.compressedSize) +
                   ", more than the limit of " + std::to_string(limits.largestRatio) + " to 1");
        return true;
    }
    return false;
}

void Archive::checkHeader(std::uint64_t index) {
    EntryInfo info = contents->info(index);
    std::string difference;
    if (!info.isEncrypted && locate(index, info, difference) && !difference.empty()) {
        owner.addFault(FaultKind::OtherHeader, index, difference);
    }
}

// Fills in where the entry's data begin, and stores it in the row; not when the local header has a
// `difference`, which each opening is to report.
bool Archive::locate(std::uint64_t index, EntryInfo& info, std::string& difference) {
    if (info.compressedSize == 0) {
        return true;
    }
    std::uint8_t* place = rows[index].host + dataOffsetPlace;
    std::memcpy(&info.dataOffset, place, sizeof info.dataOffset);
    if (info.dataOffset != 0) {
        return true;
    }
    DataPlace found = contents->findData(index, *bytes);
    info.dataOffset = found.offset;
    if (info.dataOffset == 0) {
        if (bytes->error() != 0) {
            refuse(FaultKind::ReadFailed, index,
                   "can't be read: " + std::generic_category().message(bytes->error()));
        } else {
            refuse(FaultKind::Damaged, index, "its data can't be found: " + found.problem);
        }
        return false;
    }
    difference = std::move(found.problem);
    if (difference.empty()) {
        std::memcpy(place, &info.dataOffset, sizeof info.dataOffset);
    }
    return true;
}

void Archive::closeEntry(const EntryStream& entry) {
    // The stream to be closed is nearly always the last one opened.
    const auto place = std::find_if(streams.rbegin(), streams.rend(),
                                    [&](const auto& stream) { return stream.get() == &entry; });
    if (place != streams.rend()) {
        streams.erase(std::next(place).base());
    }
}

Archive& Archive::of(HostStream* record) {
    // The record's first member is at the record's own address.
    return *static_cast<Archive*>(reinterpret_cast<ArchiveDirectory*>(record));
}

std::int32_t Archive::closeRecord(HostStream* record) noexcept {
    of(record).owner.closeArchive();
    return Handle::statusDone;
}

std::int32_t Archive::openRecord(HostStream** handle, std::uint32_t code, void* request,
                                 std::uint32_t /*mode*/) noexcept {
    const auto* member = static_cast<const MemberOpenRequest*>(request);
    *handle = nullptr;
    if (code != OpenMember || member == nullptr || member->archive == nullptr) {
        return Handle::statusFailed;
    }
    try {
        *handle = of(&member->archive->stream).openMember(*member);
    } catch (...) {
        return Handle::statusFailed;
    }
    return *handle != nullptr ? Handle::statusDone : Handle::statusFailed;
}

} // namespace olmhost
