#ifndef OLMKIT_FILTER_STATE_OLMNODEID_H
#define OLMKIT_FILTER_STATE_OLMNODEID_H

#include <cstdint>

#include "filter/boundary/Reader.h"

// One item that was listed.
struct OLMNodeId {
    tagUTXMLSaveData state; // before the item's opening tag
    uint64_t entryIndex;
    uint32_t itemNumber; // the item's number in that entry, from 1
};

#endif
