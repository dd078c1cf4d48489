#ifndef OLMKIT_FILTER_BOUNDARY_MEMORY_H
#define OLMKIT_FILTER_BOUNDARY_MEMORY_H

/*
 * Memory blocks of the host, named by handles. The host implements these functions; the module
 * imports them.
 */

#include "filter/boundary/Layout.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Allocates a block of `size` bytes. Returns its handle, or 0 on failure. */
uint64_t SYSNativeAlloc(uint64_t size);

/*
 * Locks the block at its current address. Returns that address, which stays valid until the block
 * is unlocked, or null on failure.
 */
void* SYSNativeLock(uint64_t handle);

/* Ends one lock. */
void SYSNativeUnlock(uint64_t handle);

/* Frees the block and ends its handle. */
void SYSNativeFree(uint64_t handle);

#ifdef __cplusplus
}
#endif

#endif
