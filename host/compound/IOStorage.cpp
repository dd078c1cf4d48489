#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "filter/boundary/Storage.h"
#include "host/compound/CompoundOutput.h"
#include "host/compound/StorageHandle.h"
#include "host/stream/Export.h"

namespace olmhost {

namespace {

CompoundHandle* createRoot(const RootStorageSpec& record) {
    if (record.output == nullptr) {
        return nullptr;
    }
    auto* output = dynamic_cast<CompoundOutput*>(&Handle::of(record.output));
    return output != nullptr ? output->createRoot() : nullptr;
}

CompoundHandle* createInside(const StorageSpec& record, bool isStream) {
    if (record.parent == nullptr) {
        return nullptr;
    }
    auto* parent = dynamic_cast<StorageHandle*>(&Handle::of(record.parent));
    if (parent == nullptr) {
        return nullptr;
    }
    const auto* end = std::find(std::begin(record.name), std::end(record.name), uint16_t{0});
    const std::u16string name(std::begin(record.name), end);
    return isStream ? parent->createStream(name) : parent->createStorage(name);
}

CompoundHandle* create(std::uint32_t type, const void* record) {
    switch (type) {
    case IOStream:
    case IOSubStorage:
        return createInside(*static_cast<const StorageSpec*>(record), type == IOStream);
    case IORootStorage:
        return createRoot(*static_cast<const RootStorageSpec*>(record));
    default:
        return nullptr;
    }
}

bool setClassId(HostStream* storage, const void* classId) {
    auto* root = dynamic_cast<StorageHandle*>(&Handle::of(storage));
    if (root == nullptr) {
        return false;
    }
    ClassId id;
    std::memcpy(id.data(), classId, id.size());
    return root->setClassId(id);
}

} // namespace

} // namespace olmhost

OLMHOST_EXPORT int32_t IOCreate(HostStream** handle, uint32_t type, void* record,
                                uint32_t /*flags*/) {
    using olmhost::Handle;
    if (handle == nullptr || record == nullptr) {
        return Handle::statusFailed;
    }
    try {
        olmhost::CompoundHandle* created = olmhost::create(type, record);
        if (created == nullptr) {
            return Handle::statusFailed;
        }
        *handle = created;
        return Handle::statusDone;
    } catch (...) {
        return Handle::statusFailed;
    }
}

OLMHOST_EXPORT int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t number,
                                 const void* information) {
    using olmhost::Handle;
    if (handle == nullptr || information == nullptr || type != IORootStorage ||
        number != IOInfoClassId) {
        return Handle::statusFailed;
    }
    try {
        return olmhost::setClassId(handle, information) ? Handle::statusDone : Handle::statusFailed;
    } catch (...) {
        return Handle::statusFailed;
    }
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the boundary's
OLMHOST_EXPORT uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source,
                                     uint32_t count) {
    uint32_t copied = 0;
    for (; copied < count && source[copied] != 0; ++copied) {
        destination[copied] = source[copied];
    }
    std::fill(destination + copied, destination + count, uint16_t{0});
    return destination;
}
