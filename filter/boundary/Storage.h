#ifndef OLMKIT_FILTER_BOUNDARY_STORAGE_H
#define OLMKIT_FILTER_BOUNDARY_STORAGE_H

/*
 * The storage writer of the host, which makes compound files ([MS-CFB]). The host implements these
 * functions; the module imports them. Storages and streams are handles (HostStream).
 */

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* Describes a root storage to IOCreate. The module sets only `output` and `always1`. */
typedef struct RootStorageSpec {
    HostStream* output; /* receives the bytes of the compound file */
    uint8_t host0[512];
    uint32_t always1; /* 1 */
    uint32_t host1;
} RootStorageSpec;

OLM_ASSERT_OFFSET(RootStorageSpec, output, 0);
OLM_ASSERT_OFFSET(RootStorageSpec, always1, 520);
OLM_ASSERT_SIZE(RootStorageSpec, 528);

/* Describes a storage or a stream inside another storage to IOCreate. */
typedef struct StorageSpec {
    HostStream* parent;
    uint16_t name[128]; /* UTF-16; ends at its first 0 unit or after 128 units */
} StorageSpec;

OLM_ASSERT_OFFSET(StorageSpec, parent, 0);
OLM_ASSERT_OFFSET(StorageSpec, name, 8);
OLM_ASSERT_SIZE(StorageSpec, 264);

/* Types of IOCreate. */
enum {
    IOStream = 33,     /* a stream inside a storage; record: StorageSpec */
    IOSubStorage = 34, /* a storage inside a storage; record: StorageSpec */
    IORootStorage = 35 /* a compound file on an output stream; record: RootStorageSpec */
};

/* Flags of IOCreate: for a stream, and for a storage of either type. */
enum {
    IOStreamFlags = 0x12,
    IOStorageFlags = 0x1012,
};

/* The number of IOSetInfo for the class id of a root storage: 16 bytes as they are in the file. */
enum { IOInfoClassId = 1 };

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Makes a storage or a stream and stores its handle in `*handle`; the caller closes it. Returns 0
 * for success; on failure `*handle` stays as it was.
 */
int32_t IOCreate(HostStream** handle, uint32_t type, void* record, uint32_t flags);

/* Sets the information `number` of a storage of `type`. Returns 0 for success. */
int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t number, const void* information);

/*
 * Copies at most `count` units of `source` up to its 0 unit and fills the rest of `count` units of
 * `destination` with 0. Returns `destination`.
 */
// NOLINTNEXTLINE(bugprone-reserved-identifier): the boundary prescribes the name
uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source, uint32_t count);

#ifdef __cplusplus
}
#endif

#endif
