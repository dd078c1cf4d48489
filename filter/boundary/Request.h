#ifndef OLMKIT_FILTER_BOUNDARY_REQUEST_H
#define OLMKIT_FILTER_BOUNDARY_REQUEST_H

/*
 * The request for one item as a message (see VwDoSpecial), and the location of an item. The host
 * fills in the request.
 */

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* The location of an item: the value of a row's last column, and part of a request by location. */
typedef struct ItemLocator {
    uint64_t size;       /* bytes of this record: 16 */
    uint32_t entryIndex; /* low 32 bits of the index of the archive entry */
    uint32_t itemNumber; /* the item's number in that entry, from 1 */
} ItemLocator;

OLM_ASSERT_OFFSET(ItemLocator, size, 0);
OLM_ASSERT_OFFSET(ItemLocator, entryIndex, 8);
OLM_ASSERT_OFFSET(ItemLocator, itemNumber, 12);
OLM_ASSERT_SIZE(ItemLocator, 16);

/* Asks for one item as a message. The host owns the record and the output. */
typedef struct tagSODOSPECIALARC {
    HostStream* output; /* receives the message */
    uint8_t reserved0[12];
    uint32_t flags;    /* SpecialByLocation or 0; the module ignores the other bits */
    int32_t itemIndex; /* by index: the item's number among all items listed so far, from 0 */
    uint8_t reserved1[4];
    ItemLocator locator; /* by location; the module ignores `size` */
} SODOSPECIALARC;

OLM_ASSERT_OFFSET(SODOSPECIALARC, output, 0);
OLM_ASSERT_OFFSET(SODOSPECIALARC, flags, 20);
OLM_ASSERT_OFFSET(SODOSPECIALARC, itemIndex, 24);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator, 32);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator.entryIndex, 40);
OLM_ASSERT_OFFSET(SODOSPECIALARC, locator.itemNumber, 44);
OLM_ASSERT_SIZE(SODOSPECIALARC, 48);

/* Bit of SODOSPECIALARC.flags: `locator` names the item. When it is clear `itemIndex` does. */
enum { SpecialByLocation = 1 };

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Receives the progress of an extraction after each step, on the thread of VwDoSpecial. The value
 * 100 means that the item is complete; other values are a percentage that is not limited to 0 to
 * 100. `data` is the callback data of VwDoSpecial. Returns non-zero to cancel.
 */
typedef int32_t (*ProgressCallback)(void* data, int32_t value);

#ifdef __cplusplus
}
#endif

#endif
