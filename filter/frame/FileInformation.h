#ifndef OLMKIT_FILTER_FRAME_FILEINFORMATION_H
#define OLMKIT_FILTER_FRAME_FILEINFORMATION_H

#include "filter/layout.h"

/* What the host tells of the file that it opens. The module passes one word of it on. */
typedef struct FileInformation {
    uint8_t host[16]; /* the host's own */
    uint64_t word;    /* goes into ArchiveOpenRequest.fileWord */
} FileInformation;

OLM_ASSERT_OFFSET(FileInformation, word, 16);
OLM_ASSERT_SIZE(FileInformation, 24);

#endif
