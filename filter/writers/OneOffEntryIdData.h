#ifndef OLMKIT_FILTER_WRITERS_ONEOFFENTRYIDDATA_H
#define OLMKIT_FILTER_WRITERS_ONEOFFENTRYIDDATA_H

#include <cstdint>

#include "filter/core/WString.h"

// One member of a group: what a one-off entry identifier tells of it. Texts that the document
// doesn't give are empty.
struct OneOffEntryIdData {
    qor::WString address;
    qor::WString displayName;
    int64_t addressType = 0; // as the document has it; 3 is a distribution list
};

#endif
