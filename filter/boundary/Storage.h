#ifndef OLMKIT_FILTER_BOUNDARY_STORAGE_H
#define OLMKIT_FILTER_BOUNDARY_STORAGE_H

#include "filter/boundary/HostStream.h"

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

/* What IOCreate needs for a sub-storage or a stream. */
typedef struct StorageSpec {
    HostStream* parent; /* the storage that it is made in */
    uint16_t name[128]; /* UTF-16; ends at its first 0 unit or at the 128th */
} StorageSpec;

OLM_ASSERT_OFFSET(StorageSpec, parent, 0);
OLM_ASSERT_OFFSET(StorageSpec, name, 8);
OLM_ASSERT_SIZE(StorageSpec, 264);

/* The host's storage writer. Whoever loads the module provides these functions. */

/* What IOCreate makes. */
enum {
    IOStream = 33,     /* a stream inside a storage; record: StorageSpec */
    IOSubStorage = 34, /* a storage inside a storage; record: StorageSpec */
    IORootStorage = 35 /* a compound file over an output stream; record: RootStorageSpec */
};

/* The flags that go with it. */
enum {
    IOStreamFlags = 0x12,
    IOStorageFlags = 0x1012,
};

/* IOSetInfo's number for the class id of a root storage (16 bytes as they stand in the file). */
enum { IOInfoClassId = 1 };

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Makes a storage or a stream and stores its handle, which the caller closes. 0 for success; on
 * failure `*handle` stays as it was.
 */
int32_t IOCreate(HostStream** handle, uint32_t type, void* record, uint32_t flags);

/* Sets a piece of information of a storage of `type`. 0 for success. */
int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t number, const void* information);

/* Copies text up to its 0 unit, at most `count` units, and fills what is left of `count` with 0. */
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the boundary's
uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source, uint32_t count);

#ifdef __cplusplus
}
#endif

#endif
