#ifndef OLMKIT_HOST_MEMORY_NATIVEMEMORY_H
#define OLMKIT_HOST_MEMORY_NATIVEMEMORY_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace olmhost {

// The blocks behind SYSNativeAlloc, SYSNativeLock, SYSNativeUnlock and SYSNativeFree.
//
// A handle is a slot and the slot's generation, so a handle that was freed, or was never given out,
// is known as such: using it does nothing but count as a misuse. Safe on any number of threads.
class NativeMemory {
public:
    // The one that the C functions use.
    static NativeMemory& instance();

    NativeMemory() = default;
    NativeMemory(const NativeMemory&) = delete;
    NativeMemory& operator=(const NativeMemory&) = delete;
    ~NativeMemory();

    // A handle of a block of `size` bytes, which belongs to MemoryOwner::current(); 0 when there is
    // no memory for it.
    std::uint64_t allocate(std::uint64_t size) noexcept;

    // The block's address, or null for a bad handle. One more unlock() is due then.
    void* lock(std::uint64_t handle) noexcept;

    // Ends one lock. A misuse on a bad handle and on a block that is not locked.
    void unlock(std::uint64_t handle) noexcept;

    // Ends the block. A misuse on a bad handle, and on a locked block: that one is bad at once, but
    // keeps its memory until its last lock is ended.
    void free(std::uint64_t handle) noexcept;

    // Blocks of that owner which stand.
    std::size_t blocksOf(std::uint64_t owner) const;

    // How many calls were misuses.
    std::uint64_t misuseCount() const;

private:
    struct Slot {
        void* block = nullptr; // null: the slot is free
        std::uint64_t owner = 0;
        std::uint32_t generation = 0;
        std::uint32_t lockCount = 0;
        bool isEnding = false; // freed while locked
    };

    std::uint32_t takeSlot();
    Slot* slotOf(std::uint64_t handle);
    void release(std::uint64_t handle, Slot& slot);

    mutable std::mutex mutex;
    std::vector<Slot> slots;
    std::vector<std::uint32_t> freeSlots; // as roomy as `slots`, so that freeing can't fail
    std::uint64_t misuses = 0;
};

} // namespace olmhost

#endif
