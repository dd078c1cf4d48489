#ifndef OLMKIT_FILTER_XML_ARCHIVEENTRY_H
#define OLMKIT_FILTER_XML_ARCHIVEENTRY_H

#include "filter/layout.h"

/* One row of an opened archive's directory. The name lies in the directory's `namePool`. */
typedef struct ArchiveEntry {
    uint32_t nameOffset; /* bytes from the start of `namePool` */
    uint16_t nameLength; /* bytes, UTF-8, without the 0 byte */
    uint8_t host[58];    /* the host's own; the module reads none of it */
} ArchiveEntry;

OLM_ASSERT_OFFSET(ArchiveEntry, nameOffset, 0);
OLM_ASSERT_OFFSET(ArchiveEntry, nameLength, 4);
OLM_ASSERT_OFFSET(ArchiveEntry, host, 6);
OLM_ASSERT_SIZE(ArchiveEntry, 64);

#endif
