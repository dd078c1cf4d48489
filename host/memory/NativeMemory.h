#ifndef OLMKIT_HOST_MEMORY_NATIVEMEMORY_H
#define OLMKIT_HOST_MEMORY_NATIVEMEMORY_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace olmhost {

// The blocks of SYSNativeAlloc, SYSNativeLock, SYSNativeUnlock and SYSNativeFree.
//
// A handle is a slot and the slot's generation, so a handle that was freed or never returned is
// recognized: using it only counts as a misuse. Safe on any number of threads.
class NativeMemory {
public:
    // Returns the object that the C functions use.
    static NativeMemory& instance();

    NativeMemory() = default;
    NativeMemory(const NativeMemory&) = delete;
    NativeMemory& operator=(const NativeMemory&) = delete;
    ~NativeMemory();

    // Returns the handle of a new block of `size` bytes, which belongs to MemoryOwner::current(); 0
    // when there is no memory for it.
    std::uint64_t allocate(std::uint64_t size) noexcept;

    // Returns the block's address; null for a bad handle. Each lock requires an unlock().
    void* lock(std::uint64_t handle) noexcept;

    // Ends one lock. A misuse on a bad handle and on a block that is not locked.
    void unlock(std::uint64_t handle) noexcept;

    // Frees the block. A misuse on a bad handle, and on a locked block, whose handle is bad from
    // then on but whose memory is kept until its last lock ends.
    void free(std::uint64_t handle) noexcept;

    // Returns the number of that owner's blocks.
    std::size_t blocksOf(std::uint64_t owner) const;

    // Returns the number of misuses.
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
    std::vector<std::uint32_t> freeSlots; // has the capacity of `slots`, so that freeing can't fail
    std::uint64_t misuses = 0;
};

} // namespace olmhost

#endif
