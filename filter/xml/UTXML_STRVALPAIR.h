#ifndef OLMKIT_FILTER_XML_UTXML_STRVALPAIR_H
#define OLMKIT_FILTER_XML_UTXML_STRVALPAIR_H

#include "filter/layout.h"

/* One row of a tag map: the number that the reader gives to every element of that name. */
typedef struct UTXML_STRVALPAIR {
    uint64_t value;
    const char* name; /* terminated; must outlive the reader */
} UTXML_STRVALPAIR;

OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, value, 0);
OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, name, 8);
OLM_ASSERT_SIZE(UTXML_STRVALPAIR, 16);

#endif
