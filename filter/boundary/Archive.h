#ifndef OLMKIT_FILTER_BOUNDARY_ARCHIVE_H
#define OLMKIT_FILTER_BOUNDARY_ARCHIVE_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

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
