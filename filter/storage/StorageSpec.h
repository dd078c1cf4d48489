#ifndef OLMKIT_FILTER_STORAGE_STORAGESPEC_H
#define OLMKIT_FILTER_STORAGE_STORAGESPEC_H

#include "filter/xml/HostStream.h"

/* What IOCreate needs for a sub-storage or a stream. */
typedef struct StorageSpec {
    HostStream* parent; /* the storage that it is made in */
    uint16_t name[128]; /* UTF-16; ends at its first 0 unit or at the 128th */
} StorageSpec;

OLM_ASSERT_OFFSET(StorageSpec, parent, 0);
OLM_ASSERT_OFFSET(StorageSpec, name, 8);
OLM_ASSERT_SIZE(StorageSpec, 264);

#endif
