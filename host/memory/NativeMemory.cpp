#include "host/memory/NativeMemory.h"

#include <algorithm>
#include <cstdlib>

#include "filter/boundary/Memory.h"
#include "host/memory/MemoryOwner.h"
#include "host/stream/Export.h"

namespace olmhost {

namespace {

// A handle has the slot's index plus one, so that no handle is 0.
constexpr std::uint64_t slotMask = 0xFFFFFFFF;
constexpr unsigned generationShift = 32;

} // namespace

NativeMemory& NativeMemory::instance() {
    static NativeMemory memory;
    return memory;
}

NativeMemory::~NativeMemory() {
    for (const Slot& slot : slots) {
        std::free(slot.block);
    }
}

std::uint64_t NativeMemory::allocate(std::uint64_t size) noexcept {
    // A block of 0 bytes has an address too.
    void* block = std::malloc(std::max<std::uint64_t>(size, 1));
    if (block == nullptr) {
        return 0;
    }

    try {
        const std::scoped_lock guard(mutex);
        const std::uint32_t place = takeSlot();
        Slot& slot = slots[place];
        slot.block = block;
        slot.owner = MemoryOwner::current();
        ++slot.generation;
        slot.lockCount = 0;
        slot.isEnding = false;
        return (std::uint64_t{slot.generation} << generationShift) | (std::uint64_t{place} + 1);
    } catch (...) {
        std::free(block);
        return 0;
    }
}

void* NativeMemory::lock(std::uint64_t handle) noexcept {
    const std::scoped_lock guard(mutex);
    Slot* slot = slotOf(handle);
    if (slot == nullptr || slot->isEnding) {
        ++misuses;
        return nullptr;
    }
    ++slot->lockCount;
    return slot->block;
}

void NativeMemory::unlock(std::uint64_t handle) noexcept {
    const std::scoped_lock guard(mutex);
    Slot* slot = slotOf(handle);
    if (slot == nullptr || slot->lockCount == 0) {
        ++misuses;
        return;
    }
    --slot->lockCount;
    if (slot->isEnding && slot->lockCount == 0) {
        release(handle, *slot);
    }
}

void NativeMemory::free(std::uint64_t handle) noexcept {
    const std::scoped_lock guard(mutex);
    Slot* slot = slotOf(handle);
    if (slot == nullptr || slot->isEnding) {
        ++misuses;
        return;
    }
    if (slot->lockCount > 0) {
        ++misuses;
        slot->isEnding = true;
        return;
    }
    release(handle, *slot);
}

std::size_t NativeMemory::blocksOf(std::uint64_t owner) const {
    const std::scoped_lock guard(mutex);
    return static_cast<std::size_t>(std::ranges::count_if(
        slots, [owner](const Slot& slot) { return slot.block != nullptr && slot.owner == owner; }));
}

std::uint64_t NativeMemory::misuseCount() const {
    const std::scoped_lock guard(mutex);
    return misuses;
}

std::uint32_t NativeMemory::takeSlot() {
    if (freeSlots.empty()) {
        slots.emplace_back();
        freeSlots.reserve(slots.capacity());
        return static_cast<std::uint32_t>(slots.size() - 1);
    }
    const std::uint32_t place = freeSlots.back();
    freeSlots.pop_back();
    return place;
}

NativeMemory::Slot* NativeMemory::slotOf(std::uint64_t handle) {
    const std::uint64_t number = handle & slotMask;
    if (number == 0 || number > slots.size()) {
        return nullptr;
    }
    Slot& slot = slots[number - 1];
    if (slot.block == nullptr || slot.generation != handle >> generationShift) {
        return nullptr;
    }
    return &slot;
}

void NativeMemory::release(std::uint64_t handle, Slot& slot) {
    std::free(slot.block);
    slot.block = nullptr;
    freeSlots.push_back(static_cast<std::uint32_t>((handle & slotMask) - 1));
}

} // namespace olmhost

OLMHOST_EXPORT std::uint64_t SYSNativeAlloc(std::uint64_t size) {
    return olmhost::NativeMemory::instance().allocate(size);
}

OLMHOST_EXPORT void* SYSNativeLock(std::uint64_t handle) {
    return olmhost::NativeMemory::instance().lock(handle);
}

OLMHOST_EXPORT void SYSNativeUnlock(std::uint64_t handle) {
    olmhost::NativeMemory::instance().unlock(handle);
}

OLMHOST_EXPORT void SYSNativeFree(std::uint64_t handle) {
    olmhost::NativeMemory::instance().free(handle);
}
