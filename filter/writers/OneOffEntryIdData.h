#ifndef OLMKIT_FILTER_WRITERS_ONEOFFENTRYIDDATA_H
#define OLMKIT_FILTER_WRITERS_ONEOFFENTRYIDDATA_H

#include <cstdint>

#include "filter/core/WString.h"

// One member of a group, as a one-off entry identifier describes it. A text that the document does
// not contain is empty.
struct OneOffEntryIdData {
    qor::WString address;
    qor::WString displayName;
    int64_t addressType = 0; // from the document; 3 is a distribution list
};

#endif
