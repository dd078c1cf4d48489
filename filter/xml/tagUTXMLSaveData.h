#ifndef OLMKIT_FILTER_XML_TAGUTXMLSAVEDATA_H
#define OLMKIT_FILTER_XML_TAGUTXMLSAVEDATA_H

#include "filter/layout.h"

/*
 * A reader's place in its document, filled and taken back by the host. The module copies it by
 * value and looks at nothing in it, so it may hold no pointer.
 */
typedef struct tagUTXMLSaveData {
    uint64_t host[6];
} tagUTXMLSaveData;

OLM_ASSERT_SIZE(tagUTXMLSaveData, 48);

#endif
