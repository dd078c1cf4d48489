#include <algorithm>
#include <cstring>

#include "tests/fakehost/Parts.h"

namespace fakehost {

namespace {

constexpr int32_t endStatus = 1;      // a read at the end of its stream
constexpr int32_t noEntryStatus = -5; // no such entry

Entry* entryByName(FakeHost::Parts& parts, const std::string& name) {
    for (const auto& entry : parts.entries) {
        if (entry->name == name) {
            return entry.get();
        }
    }
    return nullptr;
}

void buildRows(FakeHost::Parts& parts) {
    if (!parts.rows.empty()) {
        return;
    }
    // Something before the first name, so that an offset of 0 is never right by chance.
    parts.namePool = std::string("pool\0", 5);
    for (const auto& entry : parts.entries) {
        ArchiveEntry row{};
        row.nameOffset = static_cast<uint32_t>(parts.namePool.size());
        row.nameLength = static_cast<uint16_t>(entry->name.size());
        std::fill(std::begin(row.host), std::end(row.host), uint8_t{0xEE});
        parts.rows.push_back(row);
        parts.namePool += entry->name;
        parts.namePool.push_back('\0');
    }
}

Handle* makeArchive(FakeHost& host) {
    FakeHost::Parts& parts = host.parts();
    buildRows(parts);
    Handle* archive = parts.newHandle(host, HandleKind::Archive, "archive");
    archive->record.entries = parts.rows.data();
    archive->record.entryCount = parts.rows.size();
    archive->record.namePool = parts.namePool.data();
    return archive;
}

int32_t openRaw(FakeHost& host, HostStream** handle, ArchiveOpenRequest& request) {
    FakeHost::Parts& parts = host.parts();
    host.record(CallKind::OpenArchive, "open(39)");
    parts.archiveRequest = request;
    const Handle* raw = handleOf(*handle, "open");
    if (raw == nullptr || raw->kind != HandleKind::RawStream) {
        host.misuse("open(39) on something that is not a raw stream");
        return noEntryStatus;
    }
    int32_t status = 0;
    if (host.takeFailure(CallKind::OpenArchive, status)) {
        return status;
    }
    if (parts.archiveStatus) {
        request.flags = parts.archiveFlags;
        return *parts.archiveStatus;
    }
    *handle = &makeArchive(host)->record.stream;
    return 0;
}

Handle* makeBytesHandle(FakeHost& host, const std::string& title, const Bytes& bytes) {
    Handle* handle = host.parts().newHandle(host, HandleKind::Bytes, title);
    handle->bytes = &bytes;
    return handle;
}

int32_t openEntry(FakeHost& host, HostStream** handle, const MemberOpenRequest& request) {
    FakeHost::Parts& parts = host.parts();
    const bool byName = request.entryIndex == MEMBER_BY_NAME;
    host.record(CallKind::OpenMember,
                "open(40, " +
                    (byName ? inQuotes(toUtf16(request.name))
                            : number(static_cast<uint64_t>(request.entryIndex))) +
                    ")");
    parts.memberRequests.push_back(request);
    const Handle* archive = handleOf(&request.archive->stream, "open");
    if (archive == nullptr || archive->kind != HandleKind::Archive) {
        host.misuse("open(40) on something that is not an archive");
        return noEntryStatus;
    }
    int32_t status = 0;
    if (host.takeFailure(CallKind::OpenMember, status)) {
        return status;
    }
    const Entry* entry = nullptr;
    if (byName) {
        entry = entryByName(parts, request.name);
    } else if (static_cast<uint64_t>(request.entryIndex) < parts.entries.size()) {
        entry = parts.entries[static_cast<size_t>(request.entryIndex)].get();
    }
    if (entry == nullptr || entry->openStatus) {
        return entry == nullptr ? noEntryStatus : *entry->openStatus;
    }
    Handle* opened = makeBytesHandle(host, "entry " + entry->name, entry->bytes);
    opened->events = &entry->events;
    const auto place = std::ranges::find(parts.entries, entry, &std::unique_ptr<Entry>::get);
    opened->entryIndex = static_cast<int>(place - parts.entries.begin());
    *handle = &opened->record.stream;
    return 0;
}

int32_t closeHandle(HostStream* stream) {
    Handle* handle = handleOf(stream, "close");
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Close, "close(" + (handle == nullptr ? "?" : handle->title) + ")");
    if (handle == nullptr) {
        return -1;
    }
    handle->isOpen = false;
    handle->record.entries = nullptr;
    handle->record.namePool = nullptr;
    if (handle->kind == HandleKind::Root) {
        handle->store->isClosed = true;
    }
    return 0;
}

int32_t readBytes(HostStream* stream, void* buffer, uint32_t size, uint32_t* bytesRead) {
    Handle* handle = handleOf(stream, "read");
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Read,
                "read(" + (handle == nullptr ? "?" : handle->title) + ", " + number(size) + ")");
    *bytesRead = 0;
    int32_t status = 0;
    if (host.takeFailure(CallKind::Read, status)) {
        return status;
    }
    if (handle == nullptr || handle->kind != HandleKind::Bytes) {
        host.misuse("read on a handle without bytes");
        return -1;
    }
    const size_t rest = handle->bytes->size() - std::min(handle->position, handle->bytes->size());
    if (rest == 0) {
        return endStatus;
    }
    *bytesRead = static_cast<uint32_t>(std::min<size_t>(rest, size));
    std::memcpy(buffer, handle->bytes->data() + handle->position, *bytesRead);
    handle->position += *bytesRead;
    return 0;
}

int32_t writeBytes(HostStream* stream, const void* data, uint32_t size, uint32_t* bytesWritten) {
    Handle* handle = handleOf(stream, "write");
    FakeHost& host = FakeHost::current();
    FakeHost::Parts& parts = host.parts();
    host.record(CallKind::Write,
                "write(" + (handle == nullptr ? "?" : handle->title) + ", " + number(size) + ")");
    *bytesWritten = 0;
    int32_t status = 0;
    if (host.takeFailure(CallKind::Write, status)) {
        return status;
    }
    if (parts.shortPlan.isSet && parts.shortPlan.remaining-- == 0) {
        parts.shortPlan.isSet = false;
        parts.hasFailed = true;
        size = std::min(size, parts.shortCount);
        status = parts.shortPlan.status;
    }
    if (handle == nullptr) {
        return -1;
    }
    if (handle->kind == HandleKind::Output) {
        const auto* first = static_cast<const uint8_t*>(data);
        handle->sink->insert(handle->sink->end(), first, first + size);
    } else if (handle->kind == HandleKind::Stream) {
        handle->store->write(handle->node, data, size);
    } else {
        host.misuse("write on a handle that takes no bytes: " + handle->title);
        return -1;
    }
    *bytesWritten = size;
    return status;
}

int32_t seekTo(HostStream* stream, int64_t offset, int32_t origin) {
    Handle* handle = handleOf(stream, "seek");
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Seek, "seek(" + (handle == nullptr ? "?" : handle->title) + ", " +
                                    std::to_string(offset) + ", " + std::to_string(origin) + ")");
    int32_t status = 0;
    if (host.takeFailure(CallKind::Seek, status)) {
        return status;
    }
    if (handle == nullptr || handle->kind != HandleKind::Bytes) {
        host.misuse("seek on a handle without bytes");
        return -1;
    }
    const int64_t base = origin == 0   ? 0
                         : origin == 1 ? static_cast<int64_t>(handle->position)
                                       : static_cast<int64_t>(handle->bytes->size());
    handle->position = static_cast<size_t>(std::max<int64_t>(0, base + offset));
    return 0;
}

void neverCalled() {
    FakeHost::current().misuse("an operation that the module has no use for");
}

int32_t openFrom(HostStream** handle, uint32_t code, void* request, uint32_t mode) {
    FakeHost& host = FakeHost::current();
    if (mode != OpenModeRead) {
        host.misuse("open with mode " + number(mode));
    }
    if (code == OpenArchive) {
        return openRaw(host, handle, *static_cast<ArchiveOpenRequest*>(request));
    }
    if (code == OpenMember) {
        return openEntry(host, handle, *static_cast<MemberOpenRequest*>(request));
    }
    host.misuse("open with code " + number(code));
    return -1;
}

} // namespace

void setOperations(HostStream& stream) {
    stream = {closeHandle, readBytes, writeBytes, seekTo, neverCalled, neverCalled, openFrom};
}

FakeHost& FakeHost::entry(const std::string& name, Bytes bytes) {
    return entry(name, ItemDocument(), std::move(bytes));
}

FakeHost& FakeHost::entry(const std::string& name, const ItemDocument& document, Bytes bytes) {
    if (!state->rows.empty()) {
        misuse("an entry added to an archive that was opened");
    }
    state->entries.push_back(
        std::make_unique<Entry>(Entry{name, std::move(bytes), document.events(), std::nullopt}));
    return *this;
}

FakeHost& FakeHost::brokenEntry(const std::string& name, int32_t status) {
    if (entryByName(*state, name) == nullptr) {
        entry(name, Bytes{});
    }
    entryByName(*state, name)->openStatus = status;
    return *this;
}

void FakeHost::refuseArchive(int32_t status, uint16_t flags) {
    state->archiveStatus = status;
    state->archiveFlags = flags;
}

HostStream* FakeHost::rawStream() {
    if (state->rawStream == nullptr) {
        state->rawStream = state->newHandle(*this, HandleKind::RawStream, "raw stream");
    }
    return &state->rawStream->record.stream;
}

ArchiveDirectory* FakeHost::openArchive() {
    return &makeArchive(*this)->record;
}

const ArchiveOpenRequest& FakeHost::lastArchiveRequest() const {
    return state->archiveRequest;
}

const std::vector<MemberOpenRequest>& FakeHost::memberRequests() const {
    return state->memberRequests;
}

HostStream* FakeHost::byteStream(Bytes bytes) {
    state->loneBytes.push_back(std::make_unique<Bytes>(std::move(bytes)));
    return &makeBytesHandle(*this, "bytes", *state->loneBytes.back())->record.stream;
}

void FakeHost::setEndOfTextStatus(int16_t status) {
    state->endOfTextStatus = status;
}

} // namespace fakehost
