#include "host/archive/ArchiveFile.h"

#include <cassert>
#include <new>
#include <utility>

#include "filter/boundary/Archive.h"
#include "host/archive/Archive.h"

namespace olmhost {

namespace {

std::uint16_t flagsOf(OpenFailureKind kind) {
    switch (kind) {
    case OpenFailureKind::Damaged:
        return ArchiveDamaged;
    case OpenFailureKind::Encrypted:
        return ArchiveEncrypted;
    default:
        return 0;
    }
}

} // namespace

ArchiveFile::ArchiveFile(std::string path, const Limits& limits)
    : path(std::move(path)), bounds(limits) {
    open = openRecord;
}

ArchiveFile::ArchiveFile(const ArchiveFile& first)
    : path(first.path), bounds(first.bounds), sharedContents(first.archive->sharedContents()),
      bytes(first.archive->fileBytes().openAgain(openFailure)) {
    open = openRecord;
}

ArchiveFile::~ArchiveFile() = default;

const ArchiveContents& ArchiveFile::contents() const {
    assert(isOpen());
    return *archive->sharedContents();
}

Handle* ArchiveFile::openEntry(std::uint64_t index) {
    MemberOpenRequest request{};
    request.entryIndex = static_cast<std::int64_t>(index);
    return archive == nullptr ? nullptr : archive->openMember(request);
}

void ArchiveFile::checkRest(std::uint64_t index) {
    assert(isOpen());
    archive->checkRest(index);
}

void ArchiveFile::checkHeader(std::uint64_t index) {
    assert(isOpen());
    archive->checkHeader(index);
}

std::uint64_t ArchiveFile::size() const {
    return archive == nullptr ? 0 : archive->fileBytes().size();
}

std::uint64_t ArchiveFile::inflatedBytes() const {
    return archive == nullptr ? 0 : archive->inflatedBytes();
}

void ArchiveFile::addFault(FaultKind kind, std::uint64_t entryIndex, const std::string& text) {
    if (kind != FaultKind::ReadFailed &&
        knownFaults.contains({entryIndex, FaultKind::ReadFailed, ""})) {
        return; // what was read seems to be damaged only because the rest is missing
    }
    const std::string& mark = entryIndex == EntryFault::noEntry ? text : std::string();
    if (knownFaults.emplace(entryIndex, kind, mark).second) {
        entryFaults.push_back({kind, entryIndex, text});
    }
    if (account != nullptr) {
        account->faults.push_back({kind, entryIndex, text});
    }
}

std::shared_ptr<MemberRead> ArchiveFile::addMember(std::string_view name) {
    if (account == nullptr) {
        return nullptr;
    }
    account->members.push_back(std::make_shared<MemberRead>());
    account->members.back()->name = name;
    return account->members.back();
}

void ArchiveFile::closeArchive() {
    archive.reset();
}

std::int32_t ArchiveFile::openRecord(HostStream** handle, std::uint32_t code, void* request,
                                     std::uint32_t /*mode*/) noexcept {
    if (code != OpenArchive || *handle == nullptr || request == nullptr) {
        return statusFailed;
    }
    auto& file = static_cast<ArchiveFile&>(of(*handle));
    try {
        return file.openArchive(handle, request);
    } catch (const std::bad_alloc&) {
        file.openFailure = {OpenFailureKind::Unreadable, "needs more memory than there is"};
    } catch (...) {
        file.openFailure = {OpenFailureKind::Unreadable, "can't be read"};
    }
    return statusFailed;
}

std::int32_t ArchiveFile::openArchive(HostStream** handle, void* request) {
    if (archive != nullptr) {
        openFailure = {OpenFailureKind::Unreadable, "is open already"};
        return statusFailed;
    }
    if (sharedContents == nullptr) {
        openFailure = {};
        archive = Archive::open(*this, path, openFailure);
    } else if (bytes != nullptr) {
        archive = std::make_unique<Archive>(*this, std::move(bytes), std::move(sharedContents));
    }
    if (archive == nullptr) {
        static_cast<ArchiveOpenRequest*>(request)->flags = flagsOf(openFailure.kind);
        return statusFailed;
    }
    *handle = archive->handle();
    return statusDone;
}

} // namespace olmhost
