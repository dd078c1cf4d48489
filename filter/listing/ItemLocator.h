#ifndef OLMKIT_FILTER_LISTING_ITEMLOCATOR_H
#define OLMKIT_FILTER_LISTING_ITEMLOCATOR_H

#include "filter/layout.h"

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

#endif
