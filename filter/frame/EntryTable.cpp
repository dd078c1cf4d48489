// The table of entry points, and those of them that do nothing.

#include <algorithm>

#include "filter/boundary/EntryPoints.h"

namespace {

template <typename Function> SoRoutine routine(Function* function) {
    return reinterpret_cast<SoRoutine>(function);
}

void fillBasicEntries(SoRoutine* table) {
    table[VwStreamOpenEntry] = routine(VwStreamOpen);
    table[VwStreamSectionEntry] = routine(VwStreamSection);
    table[VwStreamReadEntry] = routine(VwStreamRead);
    table[VwStreamTellEntry] = routine(VwStreamTell);
    table[VwStreamSeekEntry] = routine(VwStreamSeek);
    table[VwGetInfoEntry] = routine(VwGetInfo);
    table[VwGetDataEntry] = routine(VwGetData);
    table[VwSetDataEntry] = routine(VwSetData);
    table[VwLocalUpEntry] = routine(VwLocalUp);
    table[VwLocalDownEntry] = routine(VwLocalDown);
    table[VwAllocProcEntry] = routine(VwAllocProc);
    table[VwFreeProcEntry] = routine(VwFreeProc);
    table[VwSetUserEntry] = routine(VwSetUser);
    table[VwSetSoRtnEntry] = routine(VwSetSoRtn);
    table[VwStreamCloseEntry] = routine(VwStreamClose);
    table[15] = nullptr;
    table[16] = nullptr;
    table[VwStreamReadRecordEntry] = routine(VwStreamReadRecord);
}

} // namespace

void VwGetRtns(SoRoutine* table, uint16_t count) {
    table[34] = nullptr; // these two whatever the count
    table[35] = nullptr;
    if (count == 0) {
        return;
    }
    fillBasicEntries(table);
    if (count > 18) {
        table[VwDoSpecialEntry] = routine(VwDoSpecial);
    }
    if (count > 22) {
        std::fill(table + 19, table + 23, nullptr);
    }
    if (count > 29) {
        std::fill(table + 23, table + 34, nullptr);
    }
}

int32_t VwStreamTell(void) {
    return 0;
}

int32_t VwStreamSeek(void) {
    return 0;
}

void VwStreamReadRecord(void) {}

void VwGetSectionDataFunc(void) {}

void VwSetSectionDataFunc(void) {}

uint64_t SODummy(void) {
    return 0;
}
