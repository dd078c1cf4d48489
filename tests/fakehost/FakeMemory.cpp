#include <algorithm>

#include "tests/fakehost/Parts.h"

using fakehost::Block;
using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::number;

namespace {

// Fills a new block, so that a read of what was never written shows.
constexpr uint8_t freshByte = 0xA5;
constexpr uint64_t firstHandle = 0xB10C'0001;

Block* blockOf(uint64_t handle, const char* function) {
    FakeHost& host = FakeHost::current();
    auto& blocks = host.parts().blocks;
    const auto found = blocks.find(handle);
    if (found == blocks.end() || found->second.isFree) {
        host.misuse(std::string(function) + " on something that is not a block");
        return nullptr;
    }
    return &found->second;
}

} // namespace

extern "C" {

uint64_t SYSNativeAlloc(uint64_t size) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Alloc, "SYSNativeAlloc(" + number(size) + ")");
    int32_t status = 0;
    if (host.takeFailure(CallKind::Alloc, status)) {
        return 0;
    }
    auto& blocks = host.parts().blocks;
    const uint64_t handle = firstHandle + blocks.size();
    Block& block = blocks[handle];
    block.bytes = std::make_unique<uint8_t[]>(size);
    std::fill_n(block.bytes.get(), size, freshByte);
    block.size = size;
    return handle;
}

void* SYSNativeLock(uint64_t handle) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Lock, "SYSNativeLock(" + number(handle) + ")");
    int32_t status = 0;
    if (host.takeFailure(CallKind::Lock, status)) {
        return nullptr;
    }
    Block* block = blockOf(handle, "SYSNativeLock");
    if (block == nullptr) {
        return nullptr;
    }
    ++block->locks;
    return block->bytes.get();
}

void SYSNativeUnlock(uint64_t handle) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Unlock, "SYSNativeUnlock(" + number(handle) + ")");
    Block* block = blockOf(handle, "SYSNativeUnlock");
    if (block == nullptr) {
        return;
    }
    if (block->locks == 0) {
        host.misuse("SYSNativeUnlock on a block that is not locked");
        return;
    }
    --block->locks;
}

void SYSNativeFree(uint64_t handle) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::Free, "SYSNativeFree(" + number(handle) + ")");
    Block* block = blockOf(handle, "SYSNativeFree");
    if (block == nullptr) {
        return;
    }
    if (block->locks != 0) {
        host.misuse("SYSNativeFree on a locked block");
    }
    block->isFree = true;
    block->bytes.reset();
}

} // extern "C"
