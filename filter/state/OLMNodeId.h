#ifndef OLMKIT_FILTER_STATE_OLMNODEID_H
#define OLMKIT_FILTER_STATE_OLMNODEID_H

#include <cstdint>

#include "filter/boundary/Reader.h"

// One item that the scan has found.
struct OLMNodeId {
    tagUTXMLSaveData state; // the reader's place just ahead of the item's opening tag
    uint64_t entryIndex;
    uint32_t itemNumber; // its place in that entry, from 1
};

#endif
