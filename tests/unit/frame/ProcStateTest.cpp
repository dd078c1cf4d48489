#include <cstring>
#include <numeric>

#include <gmock/gmock.h>

#include "filter/olmfilter.h"
#include "tests/fakehost/FakeHost.h"

namespace {

using fakehost::CallKind;
using fakehost::FakeHost;
using testing::ElementsAre;
using testing::IsEmpty;

// The documented layout of the block: 80 bytes before the routines, 150 routine members, two user
// words, the handle.
constexpr size_t routinesAt = 80;
constexpr size_t routineCount = 150;
constexpr size_t user0At = routinesAt + routineCount * sizeof(SoRoutine);
constexpr size_t handleAt = user0At + 16;
constexpr size_t blockSize = handleAt + 8;
constexpr int noId = -1;

// Returns the ids of the routine members in their order.
std::vector<int> idsInOrder() {
    std::vector<int> ids;
    const auto range = [&](int first, int last) {
        for (int id = first; id <= last; ++id) {
            ids.push_back(id);
        }
    };
    const auto list = [&](std::initializer_list<int> some) {
        ids.insert(ids.end(), some.begin(), some.end());
    };
    list({1, 138, 139, 129, 146, 131, 132, 2, 3, 4});
    range(5, 26);
    list({135, 136});
    range(27, 30);
    list({113});
    range(109, 112);
    range(31, 35);
    list({104});
    range(36, 69);
    list({122});
    range(70, 75);
    list({114});
    range(76, 103);
    range(105, 108);
    range(115, 118);
    list({noId, noId, 121});
    range(123, 128);
    list({130, 133, 134, 137, 140, 143, 141, 142, 144, 145});
    range(147, 150);
    return ids;
}

class ProcStateTest : public testing::Test {
protected:
    void SetUp() override {
        proc = VwAllocProc();
        ASSERT_NE(proc, nullptr);
    }

    void TearDown() override { VwFreeProc(proc); }

    uint8_t* bytes() { return reinterpret_cast<uint8_t*>(proc); }

    uint64_t wordAt(size_t offset) {
        uint64_t word = 0;
        std::memcpy(&word, bytes() + offset, sizeof word);
        return word;
    }

    // Returns the routine members in their order.
    std::vector<uint64_t> members() {
        std::vector<uint64_t> all;
        for (size_t i = 0; i < routineCount; ++i) {
            all.push_back(wordAt(routinesAt + i * sizeof(SoRoutine)));
        }
        return all;
    }

    FakeHost host;
    PROC* proc = nullptr;
};

void someRoutine() {}
void otherRoutine() {}

uint64_t wordOf(SoRoutine routine) {
    return reinterpret_cast<uint64_t>(routine);
}
uint64_t dummyWord() {
    return reinterpret_cast<uint64_t>(SODummy);
}

TEST_F(ProcStateTest, NewBlockIsZeroExceptForItsHandle) {
    EXPECT_THAT(host.callTexts(), ElementsAre("SYSNativeAlloc(0x518)", testing::_));
    EXPECT_EQ(host.lockedBlocks(), 1);
    EXPECT_EQ(host.blockSize(wordAt(handleAt)), blockSize);
    EXPECT_EQ(std::accumulate(bytes(), bytes() + handleAt, 0), 0);
}

TEST_F(ProcStateTest, FreedBlockIsUnlockedAndFreed) {
    PROC* second = VwAllocProc();
    host.forgetCalls();

    VwFreeProc(second);

    EXPECT_EQ(host.countOf(CallKind::Unlock), 1);
    EXPECT_EQ(host.countOf(CallKind::Free), 1);
    EXPECT_EQ(host.calls().front().kind, CallKind::Unlock);
    EXPECT_EQ(host.openBlocks(), 1);
}

TEST_F(ProcStateTest, WithoutAHandleThereIsNoBlock) {
    host.failCall(CallKind::Alloc, 0);

    EXPECT_EQ(VwAllocProc(), nullptr);
    EXPECT_EQ(host.countOf(CallKind::Lock), 1); // that of the fixture's block
}

TEST_F(ProcStateTest, BlockWithoutHandleIsNeitherUnlockedNorFreed) {
    alignas(8) uint8_t block[blockSize] = {};
    host.forgetCalls();

    VwFreeProc(reinterpret_cast<PROC*>(block));

    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ProcStateTest, LocalUpStoresTheValueAndInstallsDummies) {
    uint64_t word = 0;
    VwSetSoRtn(7, someRoutine, proc);

    VwLocalUp(0x1122334455667788, &word, proc);

    EXPECT_EQ(word, 0x1122334455667788U);
    const std::vector<int> ids = idsInOrder();
    ASSERT_EQ(ids.size(), routineCount);
    const auto all = members();
    for (size_t i = 0; i < routineCount; ++i) {
        if (ids[i] != noId) {
            EXPECT_EQ(all[i], dummyWord()) << "id " << ids[i];
        }
    }
    EXPECT_EQ(wordAt(user0At), 0U);
}

TEST_F(ProcStateTest, LocalDownStoresTheValue) {
    uint64_t word = 0;

    VwLocalDown(0x1122334455667788, &word);

    EXPECT_EQ(word, 0x1122334455667788U);
}

TEST_F(ProcStateTest, EachIdHasOneMemberInThisOrder) {
    uint64_t word = 0;
    const std::vector<int> ids = idsInOrder();
    for (int id = 0; id <= 200; ++id) {
        SCOPED_TRACE(id);
        VwLocalUp(0, &word, proc);
        const auto before = members();
        VwSetSoRtn(static_cast<uint16_t>(id), someRoutine, proc);

        const auto after = members();
        for (size_t i = 0; i < routineCount; ++i) {
            const bool isMember = ids[i] == id || (id == 121 && ids[i] == 4);
            EXPECT_EQ(after[i], isMember ? wordOf(someRoutine) : before[i]) << "member " << i;
        }
    }
}

TEST_F(ProcStateTest, IdsWithoutAMemberAreIgnored) {
    uint64_t word = 0;
    VwLocalUp(0, &word, proc);
    const fakehost::Bytes before(bytes(), bytes() + blockSize);

    for (const uint16_t id : {0, 119, 120, 151, 256, 65535}) {
        VwSetSoRtn(id, someRoutine, proc);
    }

    EXPECT_EQ(fakehost::Bytes(bytes(), bytes() + blockSize), before);
}

TEST_F(ProcStateTest, NullRoutineInstallsTheDummy) {
    VwSetSoRtn(1, someRoutine, proc);

    VwSetSoRtn(1, nullptr, proc);

    EXPECT_EQ(members()[0], dummyWord());
}

TEST_F(ProcStateTest, NullRoutineForId121InstallsTheDummyForId4Too) {
    VwSetSoRtn(4, someRoutine, proc);

    VwSetSoRtn(121, nullptr, proc);

    EXPECT_EQ(members()[9], dummyWord());
}

TEST_F(ProcStateTest, Id4InstalledAfter121ChangesOnlyItsOwnMember) {
    VwSetSoRtn(121, someRoutine, proc);
    VwSetSoRtn(4, otherRoutine, proc);

    const std::vector<int> ids = idsInOrder();
    const auto at = static_cast<size_t>(std::ranges::find(ids, 121) - ids.begin());
    EXPECT_EQ(members()[9], wordOf(otherRoutine));
    EXPECT_EQ(members()[at], wordOf(someRoutine));
}

TEST_F(ProcStateTest, UserWordsAreStored) {
    VwSetUser(0x1111, 0x2222, proc);

    EXPECT_EQ(wordAt(user0At), 0x1111U);
    EXPECT_EQ(wordAt(user0At + 8), 0x2222U);
}

TEST_F(ProcStateTest, PositionIsCopiedInBothDirections) {
    ScanPosition given;
    std::memset(&given, 0x5A, sizeof given);
    given.currentEntry = 42;
    ScanPosition taken;
    std::memset(&taken, 0xCC, sizeof taken);

    VwSetData(&given, proc);
    VwGetData(&taken, proc);

    EXPECT_EQ(std::memcmp(&given, &taken, sizeof given), 0);
    EXPECT_EQ(wordAt(sizeof given), 0U);
}

} // namespace
