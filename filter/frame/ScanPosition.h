#ifndef OLMKIT_FILTER_FRAME_SCANPOSITION_H
#define OLMKIT_FILTER_FRAME_SCANPOSITION_H

#include "filter/layout.h"

/* Where the scan of an archive stands; VwGetData copies it out, VwSetData puts it back. */
typedef struct ScanPosition {
    uint64_t currentEntry; /* index of the archive entry that comes next */
    uint8_t reserved[48];  /* zero */
} ScanPosition;

OLM_ASSERT_OFFSET(ScanPosition, currentEntry, 0);
OLM_ASSERT_SIZE(ScanPosition, 56);

#endif
