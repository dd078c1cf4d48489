#ifndef OLMKIT_FILTER_BOUNDARY_ENTRYPOINTS_H
#define OLMKIT_FILTER_BOUNDARY_ENTRYPOINTS_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"
#include "filter/boundary/Request.h"
#include "filter/boundary/Routines.h"

/* What the host tells of the file that it opens. The module passes one word of it on. */
typedef struct FileInformation {
    uint8_t host[16]; /* the host's own */
    uint64_t word;    /* goes into ArchiveOpenRequest.fileWord */
} FileInformation;

OLM_ASSERT_OFFSET(FileInformation, word, 16);
OLM_ASSERT_SIZE(FileInformation, 24);

/* Who the filter is. */
typedef struct OverlayId {
    uint16_t identifier; /* also the answer to VwGetInfo request 7 */
    uint8_t number;      /* the record's own; the module never reads it */
    char name[33];       /* the format, zero-filled */
} OverlayId;

OLM_ASSERT_OFFSET(OverlayId, identifier, 0);
OLM_ASSERT_OFFSET(OverlayId, number, 2);
OLM_ASSERT_OFFSET(OverlayId, name, 3);
OLM_ASSERT_SIZE(OverlayId, 36);

/* Where the scan of an archive stands; VwGetData copies it out, VwSetData puts it back. */
typedef struct ScanPosition {
    uint64_t currentEntry; /* index of the archive entry that comes next */
    uint8_t reserved[48];  /* zero */
} ScanPosition;

OLM_ASSERT_OFFSET(ScanPosition, currentEntry, 0);
OLM_ASSERT_SIZE(ScanPosition, 56);

/*
 * What the module exports. A host needs only VwGetRtns by name: it learns the others from the
 * table. Order of calls: VwGetRtns; for each open VwAllocProc, VwLocalUp, VwSetSoRtn for each
 * routine, VwSetUser, VwStreamOpen, VwStreamSection, VwStreamRead until SoRtnBreak(2, 0) has come,
 * VwDoSpecial at will; VwStreamClose, VwLocalDown, VwFreeProc. One PROC is used by one thread at a
 * time; different PROCs share nothing that is written.
 */

#define OLM_EXPORT __attribute__((visibility("default")))

/* The state of one open archive; the host sees the pointer alone. */
typedef struct PROCtag PROC;

/* Places in the table of VwGetRtns; the rest is null. */
enum {
    VwStreamOpenEntry = 0,
    VwStreamSectionEntry = 1,
    VwStreamReadEntry = 2,
    VwStreamTellEntry = 3,
    VwStreamSeekEntry = 4,
    VwGetInfoEntry = 5,
    VwGetDataEntry = 6,
    VwSetDataEntry = 7,
    VwLocalUpEntry = 8,
    VwLocalDownEntry = 9,
    VwAllocProcEntry = 10,
    VwFreeProcEntry = 11,
    VwSetUserEntry = 12,
    VwSetSoRtnEntry = 13,
    VwStreamCloseEntry = 14,
    VwStreamReadRecordEntry = 17,
    VwDoSpecialEntry = 18,
    VwTableEntries = 36 /* room that the table must have, whatever count is passed */
};

/* Results of VwStreamOpen. */
enum {
    VwOpenDone = 0,
    VwOpenFailed = 9,  /* no archive, or it can't be read */
    VwOpenRefused = 14 /* the host set ArchiveDamaged or ArchiveEncrypted */
};

/* Results of VwDoSpecial. */
enum {
    VwSpecialDone = 0,        /* written, or cancelled by the callback; the status is 0 */
    VwSpecialNoItem = 15,     /* by location: item number 0, or the way to it failed; status 2 */
    VwSpecialFailed = 18,     /* by index: no such item; or anything else that failed; status 2 */
    VwSpecialStatusFailed = 2 /* the status that goes with both failures */
};

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Fills `table`, which has room for VwTableEntries, as far as `count` reaches: above 18 it holds
 * VwDoSpecial. The last two entries become null whatever the count.
 */
OLM_EXPORT void VwGetRtns(SoRoutine* table, uint16_t count);

/* Stores `value` in `*word` and sets every routine of `proc` to SODummy. */
OLM_EXPORT void VwLocalUp(uint64_t value, uint64_t* word, PROC* proc);

/* Stores `value` in `*word`. */
OLM_EXPORT void VwLocalDown(uint64_t value, uint64_t* word);

/* A zeroed block in memory of the host, or null when it gives none. VwFreeProc ends it. */
OLM_EXPORT PROC* VwAllocProc(void);

/* Gives the block back. */
OLM_EXPORT void VwFreeProc(PROC* proc);

/* Sets the two words that every routine gets. */
OLM_EXPORT void VwSetUser(uint64_t user0, uint64_t user1, PROC* proc);

/*
 * Installs a routine; null installs SODummy. Ids 0, 119, 120 and above 150 are ignored; 121 is
 * stored for id 4 too.
 */
OLM_EXPORT void VwSetSoRtn(uint16_t id, SoRoutine routine, PROC* proc);

/*
 * Answers a request about the module: 1 when it stored something in `answer`, otherwise 0.
 * Requests 8 and 9 store terminated text of 12 and 9 bytes, 12 and 13 a uint32_t, the others up
 * to 11 a uint16_t; 0 and all above 13 store nothing.
 */
OLM_EXPORT int32_t VwGetInfo(void* answer, uint16_t request);

/* Copies the scan's place out, or back in. */
OLM_EXPORT void VwGetData(ScanPosition* position, PROC* proc);
OLM_EXPORT void VwSetData(const ScanPosition* position, PROC* proc);

/*
 * Opens `stream` as an archive through its own `open`. VwOpenDone, VwOpenFailed or VwOpenRefused.
 * The stream is the host's; after success its archive is closed by VwStreamClose, which must not
 * follow a failure.
 */
OLM_EXPORT int32_t VwStreamOpen(HostStream* stream, uint16_t word, uint64_t ignored,
                                const FileInformation* fileInfo, PROC* proc);

/* Announces the section and its fourteen columns. Gives 0. */
OLM_EXPORT int32_t VwStreamSection(uint64_t ignored, PROC* proc);

/*
 * Lists entry by entry until the archive's end or until SoRtnBreak(11, 0) asks for a pause; the
 * next call goes on. Gives 0. A failed entry is told by SoRtnBail and passed over.
 */
OLM_EXPORT int32_t VwStreamRead(uint64_t ignored, PROC* proc);

/* Closes the archive and frees all that the scan has kept. */
OLM_EXPORT void VwStreamClose(uint64_t ignored, PROC* proc);

/*
 * Writes one item as a message. `request` is the handle (SYSNativeAlloc) of a SODOSPECIALARC;
 * `callback` may be null. Gives VwSpecialDone, VwSpecialNoItem or VwSpecialFailed and stores the
 * status. After a failure the storage stays unclosed: the host gives back what hangs from the
 * output.
 */
OLM_EXPORT int32_t VwDoSpecial(uint64_t ignored0, uint64_t request, ProgressCallback callback,
                               void* callbackData, uint16_t* status, uint64_t ignored1, PROC* proc);

/* These do nothing; the first two give 0. */
OLM_EXPORT int32_t VwStreamTell(void);
OLM_EXPORT int32_t VwStreamSeek(void);
OLM_EXPORT void VwStreamReadRecord(void);
OLM_EXPORT void VwGetSectionDataFunc(void);
OLM_EXPORT void VwSetSectionDataFunc(void);

/* Stands for every routine that the host did not install. Takes anything, gives 0. */
OLM_EXPORT uint64_t SODummy(void);

/* Who the filter is. */
OLM_EXPORT extern const OverlayId OLMOverlayId;

/* "QOR_VER=" and the project's version. */
OLM_EXPORT extern const char* const version;

#ifdef __cplusplus
}
#endif

#endif
