#ifndef OLMKIT_FILTER_STORAGE_ROOTSTORAGESPEC_H
#define OLMKIT_FILTER_STORAGE_ROOTSTORAGESPEC_H

#include "filter/xml/HostStream.h"

/* What IOCreate needs for a root storage. The module sets the two named members alone. */
typedef struct RootStorageSpec {
    HostStream* output; /* takes the bytes of the compound file */
    uint8_t host0[512];
    uint32_t always1; /* 1 */
    uint32_t host1;
} RootStorageSpec;

OLM_ASSERT_OFFSET(RootStorageSpec, output, 0);
OLM_ASSERT_OFFSET(RootStorageSpec, always1, 520);
OLM_ASSERT_SIZE(RootStorageSpec, 528);

#endif
