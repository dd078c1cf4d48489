#include "host/archive/EntryStream.h"

#include <algorithm>
#include <utility>

#include "host/archive/Archive.h"

namespace olmhost {

EntryStream::EntryStream(Archive& archive, std::uint64_t entryIndex,
                         std::shared_ptr<EntryData> data, std::shared_ptr<MemberRead> member)
    : archive(archive), entryIndex(entryIndex), data(std::move(data)), member(std::move(member)) {
    updateAccount();
}

std::int32_t EntryStream::readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) {
    const std::size_t done = data->read(position, buffer, size);
    position += done;
    updateAccount();
    count = static_cast<std::uint32_t>(done);
    return done == 0 && position >= data->end() ? statusEnd : statusDone;
}

std::int32_t EntryStream::seekTo(std::int64_t offset, std::int32_t origin) {
    std::int64_t base = 0;
    if (origin == seekFromHere) {
        base = static_cast<std::int64_t>(position);
    } else if (origin == seekFromEnd) {
        base = static_cast<std::int64_t>(data->end());
    } else if (origin != seekFromStart) {
        return statusFailed;
    }
    std::int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) {
        return statusFailed;
    }
    position = static_cast<std::uint64_t>(target);
    return statusDone;
}

void EntryStream::updateAccount() {
    if (member == nullptr) {
        return;
    }
    member->bytesRead = std::max(member->bytesRead, std::min(position, data->end()));
    if (member->fault.size() != data->fault().size()) {
        member->fault = data->fault();
    }
}

void EntryStream::end() {
    archive.closeEntry(*this);
}

void EntryStream::reportFault(FaultKind kind, const std::string& text) {
    archive.file().addFault(kind, entryIndex, text);
}

TagWatch* EntryStream::tagWatch() {
    return archive.file().tagWatch();
}

const Limits& EntryStream::limits() const {
    return archive.file().limits();
}

} // namespace olmhost
