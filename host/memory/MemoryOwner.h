#ifndef OLMKIT_HOST_MEMORY_MEMORYOWNER_H
#define OLMKIT_HOST_MEMORY_MEMORYOWNER_H

#include <cstdint>

namespace olmhost {

// Someone whose blocks are counted: a session. What is allocated while a Scope of an owner stands
// belongs to that owner.
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

    // This owner's number; no other owner of the process ever has it. Never 0.
    std::uint64_t number() const { return ownNumber; }

    // The owner on this thread, or 0 when there is none.
    static std::uint64_t current();

    // To be called when all of this owner's blocks ought to be freed. In a build with assertions it
    // ends the process with a message when some are not; otherwise it does nothing.
    void assertNothingLeft() const;

private:
    std::uint64_t ownNumber;
};

} // namespace olmhost

#endif
