// What the module tells about itself.

#include <cstddef>
#include <cstring>

#include "filter/boundary/EntryPoints.h"
#include "filter/state/PROC.h"

namespace {

// Set by a release, not by the clock: two builds of one source are the same bytes.
constexpr char buildDate[] = "Dec 24 2025";
constexpr char buildTime[] = "04:45:48";
static_assert(sizeof(buildDate) == 12 && sizeof(buildTime) == 9);

int32_t answerText(void* answer, const char* text, std::size_t size) {
    std::memcpy(answer, text, size);
    return 1;
}

int32_t answerShort(void* answer, uint16_t value) {
    std::memcpy(answer, &value, sizeof(value));
    return 1;
}

int32_t answerLong(void* answer, uint32_t value) {
    std::memcpy(answer, &value, sizeof(value));
    return 1;
}

} // namespace

const OverlayId OLMOverlayId = {0x0565, 5, "Outlook 2011 for Mac"};

const char* const version = "QOR_VER=" OLMKIT_VERSION;

int32_t VwGetInfo(void* answer, uint16_t request) {
    switch (request) {
    case 1:
        return answerShort(answer, sizeof(ScanPosition));
    case 2:
        return answerShort(answer, offsetof(PROC, routines));
    case 3:
        return answerShort(answer, 1);
    case 4:
        return answerShort(answer, 400);
    case 5:
        return answerShort(answer, 440);
    case 6:
        return answerShort(answer, 1);
    case 7:
        return answerShort(answer, OLMOverlayId.identifier);
    case 8:
        return answerText(answer, buildDate, sizeof(buildDate));
    case 9:
        return answerText(answer, buildTime, sizeof(buildTime));
    case 10:
        return answerShort(answer, 56);
    case 11:
        return answerShort(answer, 0);
    case 12:
        return answerLong(answer, 0x12345678);
    case 13:
        return answerLong(answer, 0);
    default:
        return 0;
    }
}
