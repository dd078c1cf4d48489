#ifndef OLMKIT_HOST_MEMORY_MEMORYOWNER_H
#define OLMKIT_HOST_MEMORY_MEMORYOWNER_H

#include <cstdint>

namespace olmhost {

// An owner of memory blocks, which are counted for it: a session. What is allocated on a thread
// while it has a Scope of an owner belongs to that owner.
class MemoryOwner {
public:
    // Makes this thread allocate for `owner` until the scope's end. Scopes nest.
    class Scope {
    public:
        explicit Scope(const MemoryOwner& owner);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        std::uint64_t previous;
    };

    MemoryOwner();
    MemoryOwner(const MemoryOwner&) = delete;
    MemoryOwner& operator=(const MemoryOwner&) = delete;
    ~MemoryOwner() = default;

    // Returns this owner's number, which is unique in the process and never 0.
    std::uint64_t number() const { return ownNumber; }

    // Returns the number of this thread's owner; 0 when there is none.
    static std::uint64_t current();

    // Call it when all of this owner's blocks should be freed. In a build with assertions it aborts
    // the process with a message when some are not; otherwise it does nothing.
    void assertNothingLeft() const;

private:
    std::uint64_t ownNumber;
};

} // namespace olmhost

#endif
