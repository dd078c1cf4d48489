#include "host/compound/StreamHandle.h"

#include "host/compound/CompoundOutput.h"

namespace olmhost {

std::int32_t StreamHandle::writeBytes(const void* data, std::uint32_t size, std::uint32_t& count) {
    if (!writer.accepts(entry)) {
        return statusFailed;
    }
    if (size > largestStream - streamSize) {
        output.noteLostBytes();
        return statusFailed;
    }
    try {
        append({static_cast<const std::byte*>(data), size});
        if (watcher != nullptr && !writer.failed()) {
            watcher->wrote({static_cast<const std::byte*>(data), size});
        }
    } catch (...) {
        writer.fail(); // the bytes may be in the file in part
        throw;
    }
    if (writer.failed()) {
        return statusFailed;
    }
    streamSize += size;
    count = size;
    return statusDone;
}

void StreamHandle::append(ByteSpan bytes) {
    if (!chain) {
        if (held.size() + bytes.size() < miniStreamLimit) {
            held.insert(held.end(), bytes.begin(), bytes.end());
            return;
        }
        chain = std::make_unique<SectorChain>(writer.sectors());
        chain->append(held);
        std::vector<std::byte>().swap(held);
    }
    chain->append(bytes);
}

void StreamHandle::settle() noexcept {
    if (isStored || writer.finished()) {
        return;
    }
    isStored = true;
    try {
        store();
    } catch (...) {
        writer.fail();
    }
}

void StreamHandle::store() {
    if (chain) {
        writer.storeLong(entry, {chain->close(), static_cast<std::uint32_t>(streamSize)});
        chain.reset();
    } else {
        writer.storeShort(entry, held);
        std::vector<std::byte>().swap(held);
    }
}

} // namespace olmhost
