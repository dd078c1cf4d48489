// What the module reports about itself.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "filter/boundary/EntryPoints.h"
#include "filter/state/PROC.h"

namespace {

// Set by a release, not by the clock, so that two builds of one source are the same bytes.
constexpr char buildDate[] = "Dec 24 2025";
constexpr char buildTime[] = "04:45:48";
static_assert(sizeof buildDate == 12 && sizeof buildTime == 9);

constexpr uint16_t identifier = 0x0565;

// A request whose answer is a number. The requests without a name have a meaning only to the host.
struct NumberAnswer {
    uint16_t request;
    uint16_t size; // bytes of the answer: 2 or 4
    uint32_t value;
};

// clang-format off
constexpr NumberAnswer numberAnswers[] = {
    {VwInfoPositionSize,   2, sizeof(ScanPosition)},
    {VwInfoRoutinesOffset, 2, offsetof(PROC, routines)},
    {3,                    2, 1},
    {4,                    2, 400},
    {5,                    2, 440},
    {6,                    2, 1},
    {VwInfoIdentifier,     2, identifier},
    {10,                   2, 56},
    {11,                   2, 0},
    {12,                   4, 0x12345678},
    {VwInfoLast,           4, 0},
};
// clang-format on

int32_t answerNumber(void* answer, const NumberAnswer& row) {
    const auto low = static_cast<uint16_t>(row.value);
    const bool isShort = row.size == sizeof low;
    std::memcpy(answer, isShort ? static_cast<const void*>(&low) : &row.value, row.size);
    return 1;
}

template <std::size_t size> int32_t answerText(void* answer, const char (&text)[size]) {
    std::memcpy(answer, text, size);
    return 1;
}

} // namespace

const OverlayId OLMOverlayId = {identifier, 5, "Outlook 2011 for Mac"};

const char* const version = "QOR_VER=" OLMKIT_VERSION;

int32_t VwGetInfo(void* answer, uint16_t request) {
    if (request == VwInfoBuildDate) {
        return answerText(answer, buildDate);
    }
    if (request == VwInfoBuildTime) {
        return answerText(answer, buildTime);
    }
    const auto* row = std::ranges::find(numberAnswers, request, &NumberAnswer::request);
    return row != std::end(numberAnswers) ? answerNumber(answer, *row) : 0;
}
