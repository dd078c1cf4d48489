#ifndef OLMKIT_FILTER_FRAME_OVERLAYID_H
#define OLMKIT_FILTER_FRAME_OVERLAYID_H

#include "filter/layout.h"

/* Who the filter is. */
typedef struct OverlayId {
    uint16_t identifier; /* also the answer to VwGetInfo request 7 */
    uint8_t number;      /* the record's own; the module never reads it */
    char name[33];       /* the format, zero-filled */
} OverlayId;

OLM_ASSERT_OFFSET(OverlayId, identifier, 0);
OLM_ASSERT_OFFSET(OverlayId, number, 2);
OLM_ASSERT_OFFSET(OverlayId, name, 3);
OLM_ASSERT_SIZE(OverlayId, 36);

#endif
