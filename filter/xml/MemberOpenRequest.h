#ifndef OLMKIT_FILTER_XML_MEMBEROPENREQUEST_H
#define OLMKIT_FILTER_XML_MEMBEROPENREQUEST_H

#include "filter/xml/ArchiveDirectory.h"

/* `entryIndex` of a request that goes by name. */
#define MEMBER_BY_NAME (-1)

/* Asks for one entry of an archive, by its index or by its name; zero where nothing is said. */
typedef struct MemberOpenRequest {
    ArchiveDirectory* archive;
    char name[512];     /* by name: UTF-8 with a 0 byte; by index: zero */
    int64_t entryIndex; /* by index: from 0; by name: MEMBER_BY_NAME */
    uint32_t reserved0;
    uint16_t always1; /* 1 in every request */
    uint16_t reserved1;
} MemberOpenRequest;

OLM_ASSERT_OFFSET(MemberOpenRequest, archive, 0);
OLM_ASSERT_OFFSET(MemberOpenRequest, name, 8);
OLM_ASSERT_OFFSET(MemberOpenRequest, entryIndex, 520);
OLM_ASSERT_OFFSET(MemberOpenRequest, always1, 532);
OLM_ASSERT_SIZE(MemberOpenRequest, 536);

#endif
