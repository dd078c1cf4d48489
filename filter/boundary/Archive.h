#ifndef OLMKIT_FILTER_BOUNDARY_ARCHIVE_H
#define OLMKIT_FILTER_BOUNDARY_ARCHIVE_H

/*
 * An opened archive and the two requests of HostStream.open that lead into it. The host implements
 * the archive; the module fills in the requests.
 */

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* One row of an archive's directory. The entry's name is in the directory's `namePool`. */
typedef struct ArchiveEntry {
    uint32_t nameOffset; /* bytes from the start of `namePool` */
    uint16_t nameLength; /* bytes of UTF-8, without the terminator */
    uint8_t host[58];    /* the host's own; the module does not read it */
} ArchiveEntry;

OLM_ASSERT_OFFSET(ArchiveEntry, nameOffset, 0);
OLM_ASSERT_OFFSET(ArchiveEntry, nameLength, 4);
OLM_ASSERT_OFFSET(ArchiveEntry, host, 6);
OLM_ASSERT_SIZE(ArchiveEntry, 64);

/*
 * An opened archive. The host owns the record and everything that it points to; both stay
 * unchanged until `close`. `open` of its stream takes OpenMember.
 */
typedef struct ArchiveDirectory {
    HostStream stream;
    const ArchiveEntry* entries; /* in the order of the archive */
    uint64_t entryCount;         /* rows of `entries` */
    const char* namePool;        /* the names, each with a terminating 0 byte */
} ArchiveDirectory;

OLM_ASSERT_OFFSET(ArchiveDirectory, stream, 0);
OLM_ASSERT_OFFSET(ArchiveDirectory, entries, 56);
OLM_ASSERT_OFFSET(ArchiveDirectory, entryCount, 64);
OLM_ASSERT_OFFSET(ArchiveDirectory, namePool, 72);
OLM_ASSERT_SIZE(ArchiveDirectory, 80);

/* Asks a raw stream to open itself as an archive (OpenArchive). */
typedef struct ArchiveOpenRequest {
    uint16_t word; /* second argument of VwStreamOpen, unchanged */
    uint8_t reserved0[6];
    uint64_t fileWord; /* FileInformation.word of VwStreamOpen's fourth argument */
    uint16_t flags;    /* 0 when the call begins; the host sets them when the open fails */
    uint8_t reserved1[6];
} ArchiveOpenRequest;

OLM_ASSERT_OFFSET(ArchiveOpenRequest, word, 0);
OLM_ASSERT_OFFSET(ArchiveOpenRequest, fileWord, 8);
OLM_ASSERT_OFFSET(ArchiveOpenRequest, flags, 16);
OLM_ASSERT_SIZE(ArchiveOpenRequest, 24);

/*
 * Bits of ArchiveOpenRequest.flags that the module reads after a failed open. When both are clear
 * the stream is not an archive or can't be read.
 */
enum { ArchiveDamaged = 1, ArchiveEncrypted = 2 };

/*
 * Asks an archive for one entry (OpenMember), by its index or by its name. The members that are
 * not described are 0.
 */
typedef struct MemberOpenRequest {
    ArchiveDirectory* archive;
    char name[512];     /* by name: UTF-8 with a terminating 0 byte; by index: 0 */
    int64_t entryIndex; /* by index: the entry, from 0; by name: MEMBER_BY_NAME */
    uint32_t reserved0;
    uint16_t always1; /* 1 in every request */
    uint16_t reserved1;
} MemberOpenRequest;

OLM_ASSERT_OFFSET(MemberOpenRequest, archive, 0);
OLM_ASSERT_OFFSET(MemberOpenRequest, name, 8);
OLM_ASSERT_OFFSET(MemberOpenRequest, entryIndex, 520);
OLM_ASSERT_OFFSET(MemberOpenRequest, always1, 532);
OLM_ASSERT_SIZE(MemberOpenRequest, 536);

/* MemberOpenRequest.entryIndex of a request by name. */
#define MEMBER_BY_NAME (-1)

#endif
