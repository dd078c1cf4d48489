#ifndef OLMKIT_FILTER_BOUNDARY_MEMORY_H
#define OLMKIT_FILTER_BOUNDARY_MEMORY_H

#include "filter/boundary/Layout.h"

/* The host's memory blocks. Whoever loads the module provides these functions. */

#ifdef __cplusplus
extern "C" {
#endif

/* A handle of a block of `size` bytes, or 0. */
uint64_t SYSNativeAlloc(uint64_t size);

/* The block's address, or null. The block keeps it until it is unlocked. */
void* SYSNativeLock(uint64_t handle);

/* Ends one lock. */
void SYSNativeUnlock(uint64_t handle);

/* Ends the block. */
void SYSNativeFree(uint64_t handle);

#ifdef __cplusplus
}
#endif

#endif
