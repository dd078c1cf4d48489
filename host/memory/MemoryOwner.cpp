#include "host/memory/MemoryOwner.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "host/memory/NativeMemory.h"

namespace olmhost {

namespace {

std::uint64_t nextNumber() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

thread_local std::uint64_t currentOwner = 0;

} // namespace

MemoryOwner::Scope::Scope(const MemoryOwner& owner) : previous(currentOwner) {
    currentOwner = owner.number();
}

MemoryOwner::Scope::~Scope() {
    currentOwner = previous;
}

MemoryOwner::MemoryOwner() : ownNumber(nextNumber()) {}

std::uint64_t MemoryOwner::current() {
    return currentOwner;
}

void MemoryOwner::assertNothingLeft() const {
#ifndef NDEBUG
    const std::size_t left = NativeMemory::instance().blocksOf(ownNumber);
    if (left != 0) {
        static_cast<void>(std::fprintf(
            stderr, "olmhost: %zu memory blocks of a session were not freed at its end\n", left));
        std::abort();
    }
#endif
}

} // namespace olmhost
