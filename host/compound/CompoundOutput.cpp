#include "host/compound/CompoundOutput.h"

#include "host/compound/StorageHandle.h"
#include "host/compound/StreamHandle.h"

namespace olmhost {

CompoundOutput::CompoundOutput(ByteSink& target) : sink(target) {}

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

template <typename HandleType> CompoundHandle* CompoundOutput::keep(EntryReference entry) {
    handles.push_back(std::make_unique<HandleType>(*this, *writer, entry));
    handles.back()->place = std::prev(handles.end());
    return handles.back().get();
}

template <typename HandleType>
CompoundHandle* CompoundOutput::create(EntryReference parent, EntryType type,
                                       std::u16string_view name) {
    try {
        const std::optional<EntryReference> entry = writer->make(parent, type, name);
        return entry ? keep<HandleType>(*entry) : nullptr;
    } catch (...) {
        writer->fail(); // memory ran out halfway
        throw;
    }
}

} // namespace olmhost
