#include "filter/olmfilter.h"

std::uint64_t SYSNativeAlloc(std::uint64_t) {
    return 0;
}
