#include "host/compound/CompoundOutput.h"

#include <type_traits>
#include <utility>

#include "host/compound/StorageHandle.h"
#include "host/compound/StreamHandle.h"

namespace olmhost {

CompoundOutput::CompoundOutput(ByteSink& target, CompoundWatcher* watcher)
    : sink(target), watcher(watcher) {}

CompoundOutput::~CompoundOutput() = default;

bool CompoundOutput::isWhole() const {
    return writer && writer->finished() && !writer->failed();
}

bool CompoundOutput::failed() const {
    return rawFailed || (writer && writer->failed());
}

std::int32_t CompoundOutput::writeBytes(const void* data, std::uint32_t size,
                                        std::uint32_t& count) {
    if (writer || rawFailed) {
        return statusFailed;
    }
    hasRawBytes = true;
    if (!sink.append({static_cast<const std::byte*>(data), size})) {
        rawFailed = true;
        return statusFailed;
    }
    count = size;
    return statusDone;
}

CompoundHandle* CompoundOutput::createRoot() {
    if (writer || hasRawBytes) {
        return nullptr;
    }
    writer.emplace(sink);
    return keep<StorageHandle>(Directory::root());
}

CompoundHandle* CompoundOutput::createStorage(EntryReference parent, std::u16string_view name) {
    return create<StorageHandle>(parent, EntryType::Storage, name);
}

CompoundHandle* CompoundOutput::createStream(EntryReference parent, std::u16string_view name) {
    return create<StreamHandle>(parent, EntryType::Stream, name);
}

void CompoundOutput::finish() noexcept {
    for (const auto& handle : handles) {
        handle->settle();
    }
    try {
        writer->finish();
    } catch (...) {
        writer->fail();
    }
}

void CompoundOutput::release(CompoundHandle& handle) noexcept {
    handles.erase(handle.place);
}

template <typename HandleType> HandleType* CompoundOutput::keep(EntryReference entry) {
    auto made = std::make_unique<HandleType>(*this, *writer, entry);
    HandleType* handle = made.get();
    handles.push_back(std::move(made));
    handle->place = std::prev(handles.end());
    return handle;
}

// Notifies the watcher of a storage or stream that was made.
template <typename HandleType>
void CompoundOutput::announce(HandleType& handle, EntryReference parent, EntryReference entry,
                              std::u16string_view name) {
    const bool isInRoot = parent.id == rootEntry;
    if constexpr (std::is_same_v<HandleType, StreamHandle>) {
        if (watcher != nullptr && !isInRoot) {
            handle.watchBy(watcher->streamMade(parent.id, name));
        }
    } else if (watcher != nullptr && isInRoot) {
        watcher->storageMade(entry.id, name);
    }
}

template <typename HandleType>
CompoundHandle* CompoundOutput::create(EntryReference parent, EntryType type,
                                       std::u16string_view name) {
    try {
        const std::optional<EntryReference> entry = writer->make(parent, type, name);
        if (!entry) {
            return nullptr;
        }
        HandleType* handle = keep<HandleType>(*entry);
        announce(*handle, parent, *entry, name);
        return handle;
    } catch (...) {
        writer->fail(); // memory ran out halfway
        throw;
    }
}

} // namespace olmhost
