// The table of entry points, and the entry points that do nothing.

#include <algorithm>

#include "filter/boundary/EntryPoints.h"

namespace {

// A table is filled in steps. Each step needs a count above its limit and fills the entries from
// `first` to `last` that have no function with null.
constexpr uint16_t specialLimit = VwDoSpecialEntry;

struct EmptyEntries {
    uint16_t limit;
    uint16_t first;
    uint16_t last;
};

constexpr EmptyEntries emptyEntries[] = {
    {0, 15, 16},
    {22, 19, 22},
    {29, 23, 33},
};

constexpr uint16_t firstAlwaysEmpty = 34; // up to the end of the table, whatever the count is

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
    table[VwStreamReadRecordEntry] = routine(VwStreamReadRecord);
}

} // namespace

void VwGetRtns(SoRoutine* table, uint16_t count) {
    std::fill(table + firstAlwaysEmpty, table + VwTableEntries, nullptr);
    if (count == 0) {
        return;
    }
    fillBasicEntries(table);
    if (count > specialLimit) {
        table[VwDoSpecialEntry] = routine(VwDoSpecial);
    }
    for (const EmptyEntries& empty : emptyEntries) {
        if (count > empty.limit) {
            std::fill(table + empty.first, table + empty.last + 1, nullptr);
        }
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
