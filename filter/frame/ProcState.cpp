// The entry points that make and end a PROC, install its routines and copy its position.

#include <cstring>
#include <new>

#include "filter/boundary/Memory.h"
#include "filter/state/PROC.h"

namespace {

// The routine of the second id is installed under the first too.
constexpr uint16_t firstSharedId = 4;
constexpr uint16_t secondSharedId = 121;

SoRoutine dummyRoutine() {
    return reinterpret_cast<SoRoutine>(SODummy);
}

} // namespace

PROC* VwAllocProc(void) {
    const uint64_t handle = SYSNativeAlloc(sizeof(PROC));
    if (handle == 0) {
        return nullptr;
    }
    void* block = SYSNativeLock(handle);
    if (block == nullptr) {
        SYSNativeFree(handle);
        return nullptr;
    }
    auto* proc = new (block) PROC{};
    proc->handle = handle;
    return proc;
}

void VwFreeProc(PROC* proc) {
    const uint64_t handle = proc->handle;
    if (handle != 0) {
        SYSNativeUnlock(handle);
        SYSNativeFree(handle);
    }
}

void VwLocalUp(uint64_t value, uint64_t* word, PROC* proc) {
    *word = value;
    for (std::size_t id = 0; id <= routineIdLimit; ++id) {
        if (isRoutineId(id)) {
            proc->routines[routineSlots[id]] = dummyRoutine();
        }
    }
}

void VwLocalDown(uint64_t value, uint64_t* word) {
    *word = value;
}

void VwSetUser(uint64_t user0, uint64_t user1, PROC* proc) {
    proc->user0 = user0;
    proc->user1 = user1;
}

void VwSetSoRtn(uint16_t id, SoRoutine routine, PROC* proc) {
    if (!isRoutineId(id)) {
        return;
    }
    const SoRoutine installed = routine != nullptr ? routine : dummyRoutine();
    proc->routines[routineSlots[id]] = installed;
    if (id == secondSharedId) {
        proc->routines[routineSlots[firstSharedId]] = installed;
    }
}

void VwGetData(ScanPosition* position, PROC* proc) {
    std::memcpy(position, &proc->position, sizeof(ScanPosition));
}

void VwSetData(const ScanPosition* position, PROC* proc) {
    std::memcpy(&proc->position, position, sizeof(ScanPosition));
}
