#include "host/memory/MemoryOwner.h"

#include <thread>

#include <gtest/gtest.h>

#include "host/memory/NativeMemory.h"

namespace olmhost {
namespace {

TEST(MemoryOwnerTest, BlocksBelongToTheInnermostScope) {
    NativeMemory memory;
    const MemoryOwner outer;
    const MemoryOwner inner;

    {
        const MemoryOwner::Scope outerScope(outer);
        memory.allocate(1);
        {
            const MemoryOwner::Scope innerScope(inner);
            memory.allocate(1);
            memory.allocate(1);
        }
        memory.allocate(1);
    }
    memory.allocate(1);

    EXPECT_EQ(memory.blocksOf(outer.number()), 2U);
    EXPECT_EQ(memory.blocksOf(inner.number()), 2U);
    EXPECT_EQ(memory.blocksOf(0), 1U);
}

TEST(MemoryOwnerTest, ScopeAffectsOnlyItsOwnThread) {
    const MemoryOwner owner;
    const MemoryOwner::Scope scope(owner);
    std::uint64_t seen = owner.number();

    std::thread([&seen] { seen = MemoryOwner::current(); }).join();

    EXPECT_EQ(seen, 0U);
    EXPECT_EQ(MemoryOwner::current(), owner.number());
}

TEST(MemoryOwnerTest, NoTwoOwnersHaveTheSameNumber) {
    const MemoryOwner first;
    const MemoryOwner second;

    EXPECT_NE(first.number(), 0U);
    EXPECT_NE(first.number(), second.number());
}

TEST(MemoryOwnerDeathTest, LeakedBlockAbortsAProcessWithAssertions) {
    const MemoryOwner owner;
    const MemoryOwner::Scope scope(owner);
    const std::uint64_t handle = NativeMemory::instance().allocate(1);

#ifdef NDEBUG
    owner.assertNothingLeft();
#else
    EXPECT_DEATH(owner.assertNothingLeft(), "1 memory blocks of a session were not freed");
#endif
    NativeMemory::instance().free(handle);
    owner.assertNothingLeft();
    EXPECT_EQ(NativeMemory::instance().blocksOf(owner.number()), 0U);
}

} // namespace
} // namespace olmhost
