#include <algorithm>

#include "tests/fakehost/Parts.h"

namespace fakehost {

int MessageStore::make(int parent, const std::u16string& name, bool isStorage) {
    const int number = static_cast<int>(nodes.size());
    Node made;
    made.parent = parent;
    made.name = toUtf8(name);
    made.isStorage = isStorage;
    for (size_t i = 0; i < order.size(); ++i) {
        const Node& there = nodes[static_cast<size_t>(order[i])];
        if (there.parent == parent && there.name == made.name) {
            replace(order[i]);
            order.insert(order.begin() + static_cast<ptrdiff_t>(i), number);
            std::erase_if(order, [&](int node) {
                return node != number && nodes[static_cast<size_t>(node)].isReplaced;
            });
            nodes.push_back(std::move(made));
            return number;
        }
    }
    nodes.push_back(std::move(made));
    order.push_back(number);
    return number;
}

void MessageStore::replace(int node) {
    nodes[static_cast<size_t>(node)].isReplaced = true;
    for (size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].parent == node && !nodes[i].isReplaced) {
            replace(static_cast<int>(i));
        }
    }
}

void MessageStore::write(int node, const void* data, size_t size) {
    const auto* first = static_cast<const uint8_t*>(data);
    Bytes& bytes = nodes[static_cast<size_t>(node)].bytes;
    bytes.insert(bytes.end(), first, first + size);
}

std::string MessageStore::path(int node) const {
    if (node == rootNode) {
        return "";
    }
    const Node& own = nodes[static_cast<size_t>(node)];
    return own.parent == rootNode ? own.name : path(own.parent) + "/" + own.name;
}

StoredMessage MessageStore::snapshot() const {
    StoredMessage message;
    message.rootClassId = classId;
    message.rootMade = isMade;
    message.rootClosed = isClosed;
    for (const int number : order) {
        const Node& node = nodes[static_cast<size_t>(number)];
        message.nodes.push_back({path(number), node.isStorage, node.bytes});
    }
    return message;
}

namespace {

constexpr int32_t refused = -1;

MessageStore* newStore(FakeHost& host) {
    host.parts().stores.push_back(std::make_unique<MessageStore>());
    return host.parts().stores.back().get();
}

const Handle* outputOf(const FakeHost::Parts& parts, HostStream* output) {
    const Handle* newest = nullptr;
    for (const auto& handle : parts.handles) {
        if (handle->kind != HandleKind::Output) {
            continue;
        }
        if (&handle->record.stream == output) {
            return handle.get();
        }
        newest = handle.get();
    }
    return output == nullptr ? newest : nullptr;
}

std::u16string nameOf(const StorageSpec& record) {
    const uint16_t* first = record.name;
    const uint16_t* last = std::find(first, std::end(record.name), 0);
    return {first, last};
}

int32_t createRoot(FakeHost& host, HostStream** handle, const RootStorageSpec& record,
                   uint32_t flags) {
    host.record(CallKind::CreateRoot, "IOCreate(35, output, " + number(flags) + ")");
    int32_t status = 0;
    if (host.takeFailure(CallKind::CreateRoot, status)) {
        return status;
    }
    if (flags != IOStorageFlags || record.always1 != 1) {
        host.misuse("a root storage requested in a wrong way");
    }
    Handle* output = handleOf(record.output, "IOCreate");
    if (output == nullptr || output->kind != HandleKind::Output) {
        host.misuse("a root storage over something that is not an output");
        return refused;
    }
    if (output->store->isMade) {
        output->store = newStore(host);
    }
    output->store->isMade = true;
    Handle* root = host.parts().newHandle(host, HandleKind::Root, "root");
    root->store = output->store;
    root->node = MessageStore::rootNode;
    *handle = &root->record.stream;
    return 0;
}

int32_t createBelow(FakeHost& host, HostStream** handle, uint32_t type, const StorageSpec& record,
                    uint32_t flags) {
    const bool isStorage = type == IOSubStorage;
    const CallKind kind = isStorage ? CallKind::CreateStorage : CallKind::CreateStream;
    const std::u16string name = nameOf(record);
    const Handle* parent = handleOf(record.parent, "IOCreate");
    const std::string prefix = parent == nullptr || parent->kind != HandleKind::Storage
                                   ? ""
                                   : parent->store->path(parent->node) + "/";
    const std::string path = prefix + toUtf8(name);
    host.record(kind, "IOCreate(" + number(type) + ", \"" + path + "\", " + number(flags) + ")");
    int32_t status = 0;
    if (host.takeFailure(kind, status)) {
        return status;
    }
    if (flags != static_cast<uint32_t>(isStorage ? IOStorageFlags : IOStreamFlags)) {
        host.misuse("a storage or stream requested with wrong flags");
    }
    if (parent == nullptr ||
        (parent->kind != HandleKind::Root && parent->kind != HandleKind::Storage)) {
        host.misuse("a storage or stream made in something that is not a storage");
        return refused;
    }
    MessageStore* store = parent->store;
    const int node = store->make(parent->node, name, isStorage);
    Handle* made =
        host.parts().newHandle(host, isStorage ? HandleKind::Storage : HandleKind::Stream, path);
    made->store = store;
    made->node = node;
    *handle = &made->record.stream;
    return 0;
}

} // namespace

HostStream* FakeHost::newOutput() {
    state->sinks.push_back(std::make_unique<Bytes>());
    Handle* output = state->newHandle(*this, HandleKind::Output, "output");
    output->sink = state->sinks.back().get();
    output->store = newStore(*this);
    return &output->record.stream;
}

HostStream* FakeHost::newRoot() {
    RootStorageSpec record{};
    record.output = newOutput();
    record.always1 = 1;
    HostStream* root = nullptr;
    IOCreate(&root, IORootStorage, &record, IOStorageFlags);
    return root;
}

StoredMessage FakeHost::message(HostStream* output) const {
    const Handle* found = outputOf(*state, output);
    return found == nullptr ? StoredMessage() : found->store->snapshot();
}

Bytes FakeHost::outputBytes(HostStream* output) const {
    const Handle* found = outputOf(*state, output);
    return found == nullptr ? Bytes() : *found->sink;
}

void FakeHost::endOutput(HostStream* output) {
    const Handle* ended = outputOf(*state, output);
    if (ended == nullptr) {
        misuse("the end of something that is not an output");
        return;
    }
    for (const auto& handle : state->handles) {
        if (handle->store == ended->store) {
            handle->isOpen = false;
        }
    }
}

} // namespace fakehost

using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::Handle;
using fakehost::HandleKind;
using fakehost::number;

extern "C" {

int32_t IOCreate(HostStream** handle, uint32_t type, void* record, uint32_t flags) {
    FakeHost& host = FakeHost::current();
    switch (type) {
    case IORootStorage:
        return fakehost::createRoot(host, handle, *static_cast<RootStorageSpec*>(record), flags);
    case IOSubStorage:
    case IOStream:
        return fakehost::createBelow(host, handle, type, *static_cast<StorageSpec*>(record), flags);
    default:
        host.misuse("IOCreate with type " + number(type));
        return -1;
    }
}

int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t info, const void* information) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::SetInfo, "IOSetInfo(" + number(type) + ", " + number(info) + ")");
    const Handle* root = fakehost::handleOf(handle, "IOSetInfo");
    int32_t status = 0;
    if (host.takeFailure(CallKind::SetInfo, status)) {
        return status;
    }
    if (root == nullptr || root->kind != HandleKind::Root || type != IORootStorage ||
        info != IOInfoClassId) {
        host.misuse("IOSetInfo for something other than the class id of a root storage");
        return -1;
    }
    const auto* first = static_cast<const uint8_t*>(information);
    root->store->classId.assign(first, first + 16);
    return 0;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the boundary's
uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source, uint32_t count) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::CopyName, "_UTwstrncpy(" + number(count) + ")");
    uint32_t copied = 0;
    while (copied < count && source[copied] != 0) {
        destination[copied] = source[copied];
        ++copied;
    }
    std::fill(destination + copied, destination + count, uint16_t{0});
    return destination;
}

} // extern "C"
