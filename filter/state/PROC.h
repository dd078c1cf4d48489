#ifndef OLMKIT_FILTER_STATE_PROC_H
#define OLMKIT_FILTER_STATE_PROC_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "filter/boundary/Archive.h"
#include "filter/boundary/EntryPoints.h"
#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"
#include "filter/state/OLMNodeId.h"
#include "filter/state/RoutineSlots.h"

// The state of one open archive, in a zeroed block of the host's memory.
struct PROCtag {
    // Calls the host's routine of that id with `arguments` and the two user words, and returns its
    // result.
    template <std::size_t id, typename... Arguments> auto call(Arguments... arguments) const {
        using Routine = typename RoutineTypeOf<id>::Type;
        constexpr std::size_t slot = routineSlots[id];
        return reinterpret_cast<Routine>(routines[slot])(arguments..., user0, user1);
    }

    // The opened archive. Valid after VwStreamOpen succeeded.
    const ArchiveDirectory& directory() const {
        return *reinterpret_cast<const ArchiveDirectory*>(archive);
    }

    ScanPosition position;
    HostStream* archive;               // the raw stream; once open, the ArchiveDirectory
    qor::ArrayList<OLMNodeId*>* items; // all items listed so far; owned, from open to close
    qor::WString* scratch;             // owned, from open to close; not used

    // By slot. After VwLocalUp only the two that no id reaches are null.
    std::array<SoRoutine, routineSlotCount> routines;

    uint64_t user0; // last arguments of every routine
    uint64_t user1;
    uint64_t handle; // of this block
};

static_assert(offsetof(PROC, position) == 0);
static_assert(offsetof(PROC, archive) == 56);
static_assert(offsetof(PROC, items) == 64);
static_assert(offsetof(PROC, scratch) == 72);
static_assert(offsetof(PROC, routines) == 80);
static_assert(offsetof(PROC, user0) == 1280);
static_assert(offsetof(PROC, user1) == 1288);
static_assert(offsetof(PROC, handle) == 1296);
static_assert(sizeof(PROC) == 1304);

#endif
