#ifndef OLMKIT_FILTER_FRAME_ARCHIVEOPENREQUEST_H
#define OLMKIT_FILTER_FRAME_ARCHIVEOPENREQUEST_H

#include "filter/layout.h"

/* Bits of `flags` that the module reads after a failed open. Both clear: no archive, or unreadable.
 */
enum { ArchiveDamaged = 1, ArchiveEncrypted = 2 };

/* Asks a raw stream to open itself as an archive. */
typedef struct ArchiveOpenRequest {
    uint16_t word; /* second argument of VwStreamOpen, unchanged */
    uint8_t reserved0[6];
    uint64_t fileWord; /* FileInformation.word of VwStreamOpen's fourth argument */
    uint16_t flags;    /* zero going in; the host sets it when the open fails */
    uint8_t reserved1[6];
} ArchiveOpenRequest;

OLM_ASSERT_OFFSET(ArchiveOpenRequest, word, 0);
OLM_ASSERT_OFFSET(ArchiveOpenRequest, fileWord, 8);
OLM_ASSERT_OFFSET(ArchiveOpenRequest, flags, 16);
OLM_ASSERT_SIZE(ArchiveOpenRequest, 24);

#endif
