#ifndef OLMKIT_FILTER_XML_ARCHIVEDIRECTORY_H
#define OLMKIT_FILTER_XML_ARCHIVEDIRECTORY_H

#include "filter/xml/ArchiveEntry.h"
#include "filter/xml/HostStream.h"

/*
 * An opened archive. The host owns it and all that it points to; it stands unchanged until its
 * `close`. Its `open` takes OpenMember.
 */
typedef struct ArchiveDirectory {
    HostStream stream;
    const ArchiveEntry* entries; /* in the archive's order */
    uint64_t entryCount;         /* rows of `entries` */
    const char* namePool;        /* the names, each with a 0 byte behind it */
} ArchiveDirectory;

OLM_ASSERT_OFFSET(ArchiveDirectory, stream, 0);
OLM_ASSERT_OFFSET(ArchiveDirectory, entries, 56);
OLM_ASSERT_OFFSET(ArchiveDirectory, entryCount, 64);
OLM_ASSERT_OFFSET(ArchiveDirectory, namePool, 72);
OLM_ASSERT_SIZE(ArchiveDirectory, 80);

#endif
