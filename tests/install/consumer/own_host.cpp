#include "filter/olmfilter.h"

uint64_t SYSNativeAlloc(uint64_t) {
    return 0;
}
