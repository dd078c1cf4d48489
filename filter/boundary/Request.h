#ifndef OLMKIT_FILTER_BOUNDARY_REQUEST_H
#define OLMKIT_FILTER_BOUNDARY_REQUEST_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* Where an item lies: the value of a row's last column, and what a request by location names. */
typedef struct ItemLocator {
    uint64_t size;       /* bytes of this record: 16 */
    uint32_t entryIndex; /* low 32 bits of the archive entry's index */
    uint32_t itemNumber; /* the item's place in that entry, from 1 */
} ItemLocator;

OLM_ASSERT_OFFSET(ItemLocator, size, 0);
OLM_ASSERT_OFFSET(ItemLocator, entryIndex, 8);
OLM_ASSERT_OFFSET(ItemLocator, itemNumber, 12);
OLM_ASSERT_SIZE(ItemLocator, 16);

/* Bit of `flags`: the item is named by `locator`; clear: by `itemIndex`. */
enum { SpecialByLocation = 1 };

/* Asks for one item as a message. The host owns the record and the output. */
typedef struct tagSODOSPECIALARC {
    HostStream* output; /* takes the message */
    uint8_t reserved0[12];
    uint32_t flags;    /* SpecialByLocation */
    int32_t itemIndex; /* place among all items that the scan has found, from 0 */
    uint8_t reserved1[4];
    ItemLocator locator; /* `size` is not read */
} SODOSPECIALARC;

OLM_ASSERT_OFFSET(SODOSPECIALARC, output, 0);
OLM_ASSERT_OFFSET(SODOSPECIALARC, flags, 20);
OLM_ASSERT_OFFSET(SODOSPECIALARC, itemIndex, 24);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator, 32);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator.entryIndex, 40);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator.itemNumber, 44);
OLM_ASSERT_SIZE(SODOSPECIALARC, 48);

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Told of every step of an extraction with a progress value, on the caller's thread. 100 ends the
 * item; other values tell how far it is, unclamped, and may be negative. Non-zero cancels.
 */
typedef int32_t (*ProgressCallback)(void* data, int32_t value);

#ifdef __cplusplus
}
#endif

#endif
