#ifndef OLMKIT_FILTER_BOUNDARY_ENTRYPOINTS_H
#define OLMKIT_FILTER_BOUNDARY_ENTRYPOINTS_H

/*
 * What the module exports. The module implements these functions; a host looks up VwGetRtns by name
 * and finds the others in the table that it fills.
 *
 * Order of calls: VwGetRtns once. For each archive VwAllocProc, VwLocalUp, VwSetSoRtn for each
 * routine, VwSetUser, VwStreamOpen, VwStreamSection, VwStreamRead until SoRtnBreak(BreakArchive)
 * was called, VwDoSpecial any number of times, VwStreamClose, VwLocalDown, VwFreeProc. VwGetInfo
 * may be called at any time.
 *
 * A PROC is used by one thread at a time. Different PROCs share nothing that is written, so they
 * may be used by different threads. No exception leaves an exported function except for lack of
 * memory in VwStreamOpen and VwStreamSection.
 */

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"
#include "filter/boundary/Request.h"
#include "filter/boundary/Routines.h"

#define OLM_EXPORT __attribute__((visibility("default")))

/* The state of one open archive. The host knows it only by its address. */
typedef struct PROCtag PROC;

/* What the host knows about the file that it opens. */
typedef struct FileInformation {
    uint8_t host[16]; /* the host's own; the module does not read it */
    uint64_t word;    /* copied to ArchiveOpenRequest.fileWord */
} FileInformation;

OLM_ASSERT_OFFSET(FileInformation, word, 16);
OLM_ASSERT_SIZE(FileInformation, 24);

/* Identifies the filter. */
typedef struct OverlayId {
    uint16_t identifier; /* also the answer to VwInfoIdentifier */
    uint8_t number;      /* a number of the record; the module does not read it */
    char name[33];       /* the format, filled up with 0 bytes */
} OverlayId;

OLM_ASSERT_OFFSET(OverlayId, identifier, 0);
OLM_ASSERT_OFFSET(OverlayId, number, 2);
OLM_ASSERT_OFFSET(OverlayId, name, 3);
OLM_ASSERT_SIZE(OverlayId, 36);

/* The position of the listing in an archive (see VwGetData and VwSetData). */
typedef struct ScanPosition {
    uint64_t currentEntry; /* index of the next archive entry */
    uint8_t reserved[48];  /* 0 */
} ScanPosition;

OLM_ASSERT_OFFSET(ScanPosition, currentEntry, 0);
OLM_ASSERT_SIZE(ScanPosition, 56);

/* Indexes of the table of VwGetRtns. The entries that are not named here are null. */
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
    VwTableEntries = 36 /* the room that a table must have, whatever count is passed */
};

/* Requests of VwGetInfo. The meaning of those from 3 to 6 and from 10 to 13 is the host's. */
enum {
    VwInfoPositionSize = 1,   /* bytes of a ScanPosition */
    VwInfoRoutinesOffset = 2, /* bytes of a PROC before its first routine */
    VwInfoIdentifier = 7,     /* OverlayId.identifier */
    VwInfoBuildDate = 8,      /* text of 12 bytes, terminator included */
    VwInfoBuildTime = 9,      /* text of 9 bytes, terminator included */
    VwInfoLast = 13
};

/* Results of VwStreamOpen. */
enum {
    VwOpenDone = 0,
    VwOpenFailed = 9,  /* not an archive, or it can't be read */
    VwOpenRefused = 14 /* the host set ArchiveDamaged or ArchiveEncrypted */
};

/* Results of VwDoSpecial, and the status of its two failures. */
enum {
    VwSpecialDone = 0,        /* written, or cancelled by the callback; the status is 0 */
    VwSpecialNoItem = 15,     /* by location: item number 0, or the item can't be reached */
    VwSpecialFailed = 18,     /* by index: no such item; or any other failure */
    VwSpecialStatusFailed = 2 /* the status of VwSpecialNoItem and VwSpecialFailed */
};

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Fills `table`, which must have room for VwTableEntries, as far as `count` reaches; a count above
 * 18 includes VwDoSpecial. The last two entries become null whatever the count is.
 */
OLM_EXPORT void VwGetRtns(SoRoutine* table, uint16_t count);

/* Stores `value` in `*word` and sets every routine of `proc` to SODummy. */
OLM_EXPORT void VwLocalUp(uint64_t value, uint64_t* word, PROC* proc);

/* Stores `value` in `*word`. */
OLM_EXPORT void VwLocalDown(uint64_t value, uint64_t* word);

/*
 * Allocates a zeroed PROC in the memory of the host. Returns null when the host has no memory. The
 * caller frees it with VwFreeProc.
 */
OLM_EXPORT PROC* VwAllocProc(void);

/* Frees a PROC. */
OLM_EXPORT void VwFreeProc(PROC* proc);

/* Sets the two words that every routine of `proc` gets as its last arguments. */
OLM_EXPORT void VwSetUser(uint64_t user0, uint64_t user1, PROC* proc);

/*
 * Installs a routine under its id; null installs SODummy. Ignores the ids 0, 119, 120 and those
 * above 150. The routine of id 121 is installed under id 4 too.
 */
OLM_EXPORT void VwSetSoRtn(uint16_t id, SoRoutine routine, PROC* proc);

/*
 * Answers a request about the module. Returns 1 when it stored an answer in `answer`, and 0 for
 * request 0 and those above VwInfoLast, which store nothing. Answers are uint16_t, except for the
 * two texts and for requests 12 and 13, which are uint32_t.
 */
OLM_EXPORT int32_t VwGetInfo(void* answer, uint16_t request);

/* Stores the position of the listing in `*position`. */
OLM_EXPORT void VwGetData(ScanPosition* position, PROC* proc);

/* Sets the position of the listing. Items found earlier stay, so they may be listed twice. */
OLM_EXPORT void VwSetData(const ScanPosition* position, PROC* proc);

/*
 * Opens `stream` as an archive through its own `open`. Returns VwOpenDone, VwOpenFailed or
 * VwOpenRefused. The host owns the stream. After success VwStreamClose closes the archive; after a
 * failure VwStreamClose must not be called.
 */
OLM_EXPORT int32_t VwStreamOpen(HostStream* stream, uint16_t word, uint64_t ignored,
                                const FileInformation* fileInfo, PROC* proc);

/* Announces the section and its fourteen columns. Returns 0. */
OLM_EXPORT int32_t VwStreamSection(uint64_t ignored, PROC* proc);

/*
 * Lists the items, entry by entry, to the end of the archive or until SoRtnBreak(BreakEntry) asks
 * for a pause; the next call continues. An entry that fails is reported by SoRtnBail, and the
 * listing continues after it. Returns 0.
 */
OLM_EXPORT int32_t VwStreamRead(uint64_t ignored, PROC* proc);

/* Closes the archive and frees everything that the listing kept. */
OLM_EXPORT void VwStreamClose(uint64_t ignored, PROC* proc);

/*
 * Writes one item as a message. `request` is the handle (see SYSNativeAlloc) of a SODOSPECIALARC;
 * `callback` may be null. Stores the status in `*status` and returns VwSpecialDone,
 * VwSpecialNoItem or VwSpecialFailed. After a failure the storages of the message stay open: the
 * host closes them when it ends the output.
 *
 * A document that is not of a known kind, which only a request by location can name, is copied to
 * the output again and again until the callback cancels.
 */
OLM_EXPORT int32_t VwDoSpecial(uint64_t ignored0, uint64_t request, ProgressCallback callback,
                               void* callbackData, uint16_t* status, uint64_t ignored1, PROC* proc);

/* Do nothing. VwStreamTell and VwStreamSeek return 0. */
OLM_EXPORT int32_t VwStreamTell(void);
OLM_EXPORT int32_t VwStreamSeek(void);
OLM_EXPORT void VwStreamReadRecord(void);
OLM_EXPORT void VwGetSectionDataFunc(void);
OLM_EXPORT void VwSetSectionDataFunc(void);

/* Replaces every routine that the host did not install. Ignores its arguments and returns 0. */
OLM_EXPORT uint64_t SODummy(void);

/* Identifies the filter. */
OLM_EXPORT extern const OverlayId OLMOverlayId;

/* "QOR_VER=" followed by the version of the project. */
OLM_EXPORT extern const char* const version;

#ifdef __cplusplus
}
#endif

#endif
