#ifndef OLMKIT_FILTER_XML_UTXMLREADER_H
#define OLMKIT_FILTER_XML_UTXMLREADER_H

#include "filter/layout.h"

/* The host's reader state. The module gives the room, the host alone knows what is in it. */
typedef struct UTXMLReader {
    uint64_t host[72];
} UTXMLReader;

OLM_ASSERT_SIZE(UTXMLReader, 576);

#endif
