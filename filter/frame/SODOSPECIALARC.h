#ifndef OLMKIT_FILTER_FRAME_SODOSPECIALARC_H
#define OLMKIT_FILTER_FRAME_SODOSPECIALARC_H

#include "filter/listing/ItemLocator.h"
#include "filter/xml/HostStream.h"

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
