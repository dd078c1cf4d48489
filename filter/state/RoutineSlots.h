#ifndef OLMKIT_FILTER_STATE_ROUTINESLOTS_H
#define OLMKIT_FILTER_STATE_ROUTINESLOTS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "filter/boundary/Routines.h"

// The slots of the host's routines in PROC, and the types of those that the module calls.

inline constexpr std::size_t routineIdLimit = 150; // the highest id
inline constexpr std::size_t routineSlotCount = 150;

struct RoutineIdRun {
    std::size_t first;
    std::size_t last;
};

// The slots in order, by the ids that reach them. No routine can be installed for 119 and 120.
// clang-format off
inline constexpr auto routineIdRuns = std::to_array<RoutineIdRun>({
    {1,   1},
    {138, 139},
    {129, 129},
    {146, 146},
    {131, 132},
    {2,   4},
    {5,   26},
    {135, 136},
    {27,  30},
    {113, 113},
    {109, 112},
    {31,  35},
    {104, 104},
    {36,  69},
    {122, 122},
    {70,  75},
    {114, 114},
    {76,  103},
    {105, 108},
    {115, 118},
    {119, 120},
    {121, 121},
    {123, 128},
    {130, 130},
    {133, 134},
    {137, 137},
    {140, 140},
    {143, 143},
    {141, 142},
    {144, 145},
    {147, 150},
});
// clang-format on

// The slot of each id; routineSlotCount for id 0.
inline constexpr auto routineSlots = [] {
    std::array<std::size_t, routineIdLimit + 1> slots{};
    slots.fill(routineSlotCount);
    std::size_t next = 0;
    for (const RoutineIdRun& run : routineIdRuns) {
        for (std::size_t id = run.first; id <= run.last; ++id) {
            slots.at(id) = next++;
        }
    }
    return slots;
}();

static_assert(
    [] {
        std::array<bool, routineSlotCount> taken{};
        for (std::size_t id = 1; id <= routineIdLimit; ++id) {
            if (taken.at(routineSlots.at(id))) {
                return false;
            }
            taken.at(routineSlots.at(id)) = true;
        }
        return true;
    }(),
    "every id has its own slot");

// Returns true for the 148 ids under which a routine can be installed.
constexpr bool isRoutineId(std::size_t id) {
    return id != 0 && id != 119 && id != 120 && id <= routineIdLimit;
}

template <std::size_t id> struct RoutineTypeOf;

// clang-format off
template <> struct RoutineTypeOf<SoRtnPutCharId>      { using Type = SoRtnPutChar; };
template <> struct RoutineTypeOf<SoRtnCellEndId>      { using Type = SoRtnCellEnd; };
template <> struct RoutineTypeOf<SoRtnBreakId>        { using Type = SoRtnBreak; };
template <> struct RoutineTypeOf<SoRtnPutValueId>     { using Type = SoRtnPutValue; };
template <> struct RoutineTypeOf<SoRtnColumnsBeginId> { using Type = SoRtnColumnsBegin; };
template <> struct RoutineTypeOf<SoRtnColumnsEndId>   { using Type = SoRtnColumnsEnd; };
template <> struct RoutineTypeOf<SoRtnSectionTypeId>  { using Type = SoRtnSectionType; };
template <> struct RoutineTypeOf<SoRtnSectionNameId>  { using Type = SoRtnSectionName; };
template <> struct RoutineTypeOf<SoRtnBailId>         { using Type = SoRtnBail; };
template <> struct RoutineTypeOf<SoRtnTagBeginId>     { using Type = SoRtnTagBegin; };
template <> struct RoutineTypeOf<SoRtnTagEndId>       { using Type = SoRtnTagEnd; };
template <> struct RoutineTypeOf<SoRtnCharsetId>      { using Type = SoRtnCharset; };
template <> struct RoutineTypeOf<SoRtnColumnDoneId>   { using Type = SoRtnColumnDone; };
template <> struct RoutineTypeOf<SoRtnColumnTypeId>   { using Type = SoRtnColumnType; };
template <> struct RoutineTypeOf<SoRtnColumnFormatId> { using Type = SoRtnColumnFormat; };
template <> struct RoutineTypeOf<SoRtnCellBeginId>    { using Type = SoRtnCellBegin; };
template <> struct RoutineTypeOf<SoRtnPutTextId>      { using Type = SoRtnPutText; };
// clang-format on

#endif
