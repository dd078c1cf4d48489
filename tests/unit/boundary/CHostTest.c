/* What a host written in C sees: one header without C++, and records in the documented layout. */

#include <stdio.h>
#include <string.h>

#include "filter/olmfilter.h"

static int failures = 0;

static void expect(int isTrue, const char* text) {
    if (!isTrue) {
        fprintf(stderr, "%s\n", text);
        ++failures;
    }
}

/* An item named by location, as the bytes that the module reads. */
static void requestHasItsLayout(void) {
    SODOSPECIALARC request;
    unsigned char bytes[48];
    uint32_t word;

    memset(&request, 0, sizeof request);
    request.flags = SpecialByLocation;
    request.itemIndex = -2;
    request.locator.entryIndex = 7;
    request.locator.itemNumber = 9;
    memcpy(bytes, &request, sizeof bytes);

    memcpy(&word, bytes + 20, sizeof word);
    expect(word == 1, "the flags are at 20");
    memcpy(&word, bytes + 24, sizeof word);
    expect(word == 0xFFFFFFFEU, "the index is at 24");
    memcpy(&word, bytes + 40, sizeof word);
    expect(word == 7, "the entry is at 40");
    memcpy(&word, bytes + 44, sizeof word);
    expect(word == 9, "the item is at 44");
}

static int32_t closeNothing(HostStream* handle) {
    (void)handle;
    return 5;
}

/* An archive is a handle: its operations come first. */
static void archiveIsAHandle(void) {
    ArchiveDirectory archive;
    HostStream* handle = &archive.stream;

    memset(&archive, 0, sizeof archive);
    archive.stream.close = closeNothing;
    expect((void*)handle == (void*)&archive, "the operations come first");
    expect(handle->close(handle) == 5, "an operation is reached through the record");
}

/* The types of all functions can be named, so that a host can keep what VwGetRtns returns. */
static void entryPointsHaveTypes(void) {
    void (*getRtns)(SoRoutine*, uint16_t) = NULL;
    PROC* (*allocProc)(void) = NULL;
    int32_t (*doSpecial)(uint64_t, uint64_t, ProgressCallback, void*, uint16_t*, uint64_t, PROC*) =
        NULL;
    int16_t (*readNextTag)(UTXMLReader*, UTXMLTagRecord*, uint64_t*) = NULL;

    expect(sizeof getRtns == sizeof(SoRoutine), "a table of routines holds entry points");
    expect(allocProc == NULL && doSpecial == NULL && readNextTag == NULL,
           "a function is a pointer");
    expect(VwTableEntries == 36, "the table has room for 36 entries");
}

int main(void) {
    requestHasItsLayout();
    archiveIsAHandle();
    entryPointsHaveTypes();
    return failures == 0 ? 0 : 1;
}
