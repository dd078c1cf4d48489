#ifndef OLMKIT_FILTER_XML_UTXMLTAGRECORD_H
#define OLMKIT_FILTER_XML_UTXMLTAGRECORD_H

#include "filter/layout.h"

/* `id` of an element whose name no tag map holds. */
#define UTXML_UNKNOWN_TAG 0xFFFFFFFFU

/* Bit of `flags`: a closing tag. */
#define UTXML_CLOSING_TAG 0x1000U

/* One tag as the reader delivers it. Opening and closing tag of an element have the same `id`. */
typedef struct UTXMLTagRecord {
    uint32_t host0; /* the host's own; goes back to it with UTXMLSkipTag */
    uint32_t id;    /* value of the tag map, or UTXML_UNKNOWN_TAG */
    uint32_t flags; /* UTXML_CLOSING_TAG; the other bits are the host's */
    uint32_t host1; /* as host0 */
} UTXMLTagRecord;

OLM_ASSERT_OFFSET(UTXMLTagRecord, id, 4);
OLM_ASSERT_OFFSET(UTXMLTagRecord, flags, 8);
OLM_ASSERT_SIZE(UTXMLTagRecord, 16);

#endif
