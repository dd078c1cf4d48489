#include "host/memory/NativeMemory.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "filter/boundary/Memory.h"

#ifdef __SANITIZE_ADDRESS__
// A test expects a refused block, not the end of the process.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

namespace olmhost {
namespace {

TEST(NativeMemoryTest, BlockKeepsItsAddressAndContents) {
    NativeMemory memory;
    const std::uint64_t handle = memory.allocate(100);

    void* first = memory.lock(handle);
    ASSERT_NE(first, nullptr);
    std::memset(first, 0x5A, 100);
    memory.unlock(handle);
    void* second = memory.lock(handle);

    EXPECT_EQ(second, first);
    EXPECT_EQ(static_cast<unsigned char*>(second)[99], 0x5A);
    memory.unlock(handle);
    memory.free(handle);
    EXPECT_EQ(memory.misuseCount(), 0U);
}

TEST(NativeMemoryTest, ZeroIsNeverAHandle) {
    NativeMemory memory;
    std::set<std::uint64_t> handles;

    for (int round = 0; round < 100; ++round) {
        handles.insert(memory.allocate(1));
    }

    EXPECT_EQ(handles.size(), 100U);
    EXPECT_FALSE(handles.contains(0));
    EXPECT_EQ(memory.lock(0), nullptr);
    EXPECT_EQ(memory.misuseCount(), 1U);
}

TEST(NativeMemoryTest, BlockOfZeroBytesIsABlock) {
    NativeMemory memory;

    const std::uint64_t handle = memory.allocate(0);

    EXPECT_NE(handle, 0U);
    EXPECT_NE(memory.lock(handle), nullptr);
}

TEST(NativeMemoryTest, BlockThatIsTooLargeReturnsZero) {
    NativeMemory memory;

    EXPECT_EQ(memory.allocate(std::numeric_limits<std::uint64_t>::max() / 4), 0U);
}

TEST(NativeMemoryTest, FreedHandleStaysBadWhenItsSlotIsReused) {
    NativeMemory memory;
    const std::uint64_t old = memory.allocate(8);
    memory.free(old);

    const std::uint64_t young = memory.allocate(8);

    EXPECT_NE(young, old);
    EXPECT_EQ(memory.lock(old), nullptr);
    memory.unlock(old);
    memory.free(old);
    EXPECT_EQ(memory.misuseCount(), 3U);
    EXPECT_NE(memory.lock(young), nullptr);
}

TEST(NativeMemoryTest, HandleThatWasNeverReturnedOnlyCounts) {
    NativeMemory memory;
    const std::uint64_t handle = memory.allocate(8);

    memory.free(handle + 1);
    memory.unlock(handle + (std::uint64_t{1} << 32));
    memory.free(std::numeric_limits<std::uint64_t>::max());

    EXPECT_EQ(memory.misuseCount(), 3U);
    EXPECT_NE(memory.lock(handle), nullptr);
}

TEST(NativeMemoryTest, UnlockWithoutALockIsAMisuse) {
    NativeMemory memory;
    const std::uint64_t handle = memory.allocate(8);
    memory.lock(handle);
    memory.unlock(handle);

    memory.unlock(handle);

    EXPECT_EQ(memory.misuseCount(), 1U);
    EXPECT_NE(memory.lock(handle), nullptr);
}

TEST(NativeMemoryTest, LockedBlockThatIsFreedKeepsItsMemoryUntilItsLastLockEnds) {
    NativeMemory memory;
    const std::uint64_t handle = memory.allocate(8);
    auto* place = static_cast<unsigned char*>(memory.lock(handle));
    memory.lock(handle);

    memory.free(handle);
    place[7] = 1; // AddressSanitizer reports it when the block is freed
    EXPECT_EQ(memory.lock(handle), nullptr);
    memory.unlock(handle);
    place[7] = 2;
    memory.unlock(handle);

    EXPECT_EQ(memory.misuseCount(), 2U);
    EXPECT_EQ(memory.blocksOf(0), 0U);
}

TEST(NativeMemoryTest, ThreadsDoNotAffectEachOther) {
    constexpr int threadCount = 4;
    constexpr int rounds = 5000;
    NativeMemory memory;
    const auto work = [&memory](unsigned char mark) {
        for (int round = 0; round < rounds; ++round) {
            const std::uint64_t handle = memory.allocate(16);
            auto* place = static_cast<unsigned char*>(memory.lock(handle));
            std::memset(place, mark, 16);
            for (int byte = 0; byte < 16; ++byte) {
                ASSERT_EQ(place[byte], mark);
            }
            memory.unlock(handle);
            memory.free(handle);
        }
    };

    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back(work, static_cast<unsigned char>(number + 1));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(memory.misuseCount(), 0U);
    EXPECT_EQ(memory.blocksOf(0), 0U);
}

TEST(NativeMemoryTest, ImportedFunctionsShareOneMemory) {
    const std::uint64_t handle = SYSNativeAlloc(4);

    EXPECT_NE(SYSNativeLock(handle), nullptr);
    EXPECT_NE(NativeMemory::instance().lock(handle), nullptr);
    SYSNativeUnlock(handle);
    SYSNativeUnlock(handle);
    SYSNativeFree(handle);
    EXPECT_EQ(SYSNativeLock(handle), nullptr);
}

} // namespace
} // namespace olmhost
