/*
 * A host of the filter: lists an archive, or writes one item as a folder of streams.
 *
 *     minimal_host MODULE ARCHIVE [--extract N OUT]
 *
 * It shows every part of the boundary in the simplest way; "Better:" says what a host for daily use
 * does instead. This file has memory, rows and the order of calls: start with main(), at the end.
 * The exit status is 0 when all is done, 1 after a failure, which is reported, 2 on wrong usage.
 */
#include "minimal_host.h"

#include <dlfcn.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "utf16.h"

static int faults; /* reported so far */

int32_t fault(const char* what, const char* why) {
    fprintf(stderr, "minimal_host: %s: %s\n", what, why);
    ++faults;
    return -1;
}

void* need(void* block) {
    if (block == NULL) {
        fault("memory", "exhausted");
        exit(1);
    }
    return block;
}

/* ---- Memory. A handle is the block's address, so a lock has nothing to do. ---- */

uint64_t SYSNativeAlloc(uint64_t size) {
    return (uint64_t)(uintptr_t)malloc(size);
}

void* SYSNativeLock(uint64_t handle) {
    return (void*)(uintptr_t)handle;
}

void SYSNativeUnlock(uint64_t handle) {
    (void)handle;
}

void SYSNativeFree(uint64_t handle) {
    free((void*)(uintptr_t)handle);
}

/* ---- Rows: number, name, subject, date and kind, printed as the cells arrive. ---- */

enum { NameColumn, SubjectColumn = 4, SentColumn, ReceivedColumn, ModifiedColumn, KindColumn = 11 };

/* A kind is 0x30000, 0x40000 and so on, in the order of `kinds`. */
enum { KindStep = 0x10000, FirstKind = 3, KindCount = 5 };

/* The state of a scan, passed as the first word of VwSetUser. */
typedef struct Scan {
    int isDone;
    unsigned long rows;
    int column; /* of the next cell */
    int hasDate;
} Scan;

static Scan* scanOf(uint64_t user0) {
    return (Scan*)(uintptr_t)user0;
}

/* Only address lists, which are not printed, have several texts in a cell. */
static int32_t putText(const uint16_t* text, uint16_t length, uint32_t charset, uint64_t user0,
                       uint64_t user1) {
    Scan* const scan = scanOf(user0);
    const int column = scan->column;
    const int isDate = column >= SentColumn && column <= ModifiedColumn;
    (void)charset, (void)user1;
    if (column == NameColumn) {
        printf("%lu\t", scan->rows);
    } else if (column == SubjectColumn || column == SentColumn) {
        putchar('\t');
    }
    if (column == NameColumn || column == SubjectColumn || (isDate && !scan->hasDate)) {
        printUtf16(text, length);
        scan->hasDate |= isDate && length != 0;
    }
    return 0;
}

static void putValue(const void* value, uint64_t user0, uint64_t user1) {
    static const char* const kinds[KindCount] = {"email", "contact", "appointment", "note", "task"};
    uint32_t number = 0;
    (void)user1;
    if (scanOf(user0)->column == KindColumn) {
        memcpy(&number, value, sizeof number);
        const uint32_t kind = number / KindStep - FirstKind;
        printf("\t%s", kind < KindCount ? kinds[kind] : "unknown");
    }
}

static void cellEnd(uint16_t code, uint64_t user0, uint64_t user1) {
    (void)code, (void)user1;
    ++scanOf(user0)->column;
}

/* Better: return non-zero at BreakEntry to pause the scan, when the user asks for it. */
static uint16_t breakAt(uint16_t code, uint32_t zero, uint64_t user0, uint64_t user1) {
    Scan* const scan = scanOf(user0);
    (void)zero, (void)user1;
    if (scan->column != 0) { /* there are no cells when rows aren't printed */
        putchar('\n');
        *scan = (Scan){.rows = scan->rows + (code == BreakRow)};
    }
    scan->isDone = code == BreakArchive;
    return 0;
}

/* Called when an entry fails. The scan continues with the next entry, but an extraction must not be
 * continued.
 */
static void bail(uint32_t failure, uint64_t user0, uint64_t user1) {
    (void)failure, (void)user1;
    fault("an entry", "can't be read as a document");
    if (scanOf(user0)->isDone) {
        exit(1);
    }
}

/* ---- The order of calls. ---- */

/* Calls an entry point by its index in the table that VwGetRtns fills. */
#define CALL(name) ((__typeof__(&name))table[name##Entry])

static void list(const SoRoutine* table, PROC* proc, Scan* scan, int isPrinted) {
    if (isPrinted) {
        CALL(VwSetSoRtn)(SoRtnPutTextId, (SoRoutine)putText, proc);
        CALL(VwSetSoRtn)(SoRtnPutValueId, (SoRoutine)putValue, proc);
        CALL(VwSetSoRtn)(SoRtnCellEndId, (SoRoutine)cellEnd, proc);
    }
    CALL(VwSetSoRtn)(SoRtnBreakId, (SoRoutine)breakAt, proc);
    CALL(VwSetSoRtn)(SoRtnBailId, (SoRoutine)bail, proc); /* routines not set do nothing */
    CALL(VwSetUser)((uint64_t)(uintptr_t)scan, 0, proc);
    CALL(VwStreamSection)(0, proc);
    while (!scan->isDone) {
        CALL(VwStreamRead)(0, proc);
    }
}

/* Writes to `out`.part and renames it, so that `out` is always complete. Items are named by index:
 * the module has kept the place of every item while listing.
 */
static void extract(const SoRoutine* table, PROC* proc, int32_t index, const char* out) {
    char partial[4096];
    uint16_t status = 0;
    if ((size_t)snprintf(partial, sizeof partial, "%s.part", out) >= sizeof partial) {
        fault(out, "the name is too long");
        return;
    }
    const uint64_t handle = SYSNativeAlloc(sizeof(SODOSPECIALARC));
    SODOSPECIALARC* const request = need(SYSNativeLock(handle));
    *request = (SODOSPECIALARC){.output = newOutput(partial), .itemIndex = index};
    const int before = faults;
    if (CALL(VwDoSpecial)(0, handle, NULL, NULL, &status, 0, proc) != VwSpecialDone) {
        fault(out, "not written: there is no such item, or it can't be extracted");
    } else if (faults != before) {
        fault(partial, "is incomplete and keeps this name");
    } else if (rename(partial, out) != 0) {
        fault(out, strerror(errno));
    }
    request->output->close(request->output);
    SYSNativeUnlock(handle);
    SYSNativeFree(handle);
}

static void run(const SoRoutine* table, const char* archive, long index, const char* out) {
    HostStream* const file = newFile(archive);
    const FileInformation information = {.word = 0};
    Scan scan = {.rows = 0};
    uint64_t word = 0;
    PROC* const proc = need(CALL(VwAllocProc)());
    CALL(VwLocalUp)(0, &word, proc); /* before VwSetSoRtn: it clears all routines */
    if (CALL(VwStreamOpen)(file, 0, 0, &information, proc) == VwOpenDone) {
        list(table, proc, &scan, out == NULL);
        if (out != NULL) {
            extract(table, proc, (int32_t)index, out);
        }
        CALL(VwStreamClose)(0, proc); /* not after a failed open */
    }
    CALL(VwLocalDown)(0, &word);
    CALL(VwFreeProc)(proc);
    file->close(file);
}

/* The module finds its imports in this program, which exports its functions. */
int main(int count, char** arguments) {
    SoRoutine table[VwTableEntries] = {NULL};
    char* end = NULL;
    const int isExtraction = count == 6 && strcmp(arguments[3], "--extract") == 0;
    const long index = isExtraction ? strtol(arguments[4], &end, 10) : 0;
    if ((count != 3 && !isExtraction) || index < 0 || index > INT32_MAX ||
        (isExtraction && (*end != '\0' || end == arguments[4]))) {
        fputs("usage: minimal_host MODULE ARCHIVE [--extract N OUT]\n", stderr);
        return 2;
    }
    void* const module = dlopen(arguments[1], RTLD_NOW);
    __typeof__(&VwGetRtns) getRtns = NULL;
    if (module != NULL) {
        *(void**)&getRtns = dlsym(module, "VwGetRtns");
    }
    if (getRtns == NULL) {
        fault(arguments[1], dlerror());
        return 1;
    }
    getRtns(table, VwTableEntries);
    run(table, arguments[2], index, isExtraction ? arguments[5] : NULL);
    if (fflush(stdout) != 0) {
        fault("standard output", strerror(errno));
    }
    dlclose(module);
    return faults == 0 ? 0 : 1;
}
