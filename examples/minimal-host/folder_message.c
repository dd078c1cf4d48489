/*
 * The storages and streams of a message, as folders and files.
 *
 * A request that fails leaves its handles open; here the end of the program closes them. Better:
 * keep a list of them, and write a compound file (MS-CFB), which mail programs read.
 */
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "minimal_host.h"

typedef struct Place {
    HostStream stream; /* must be first: the module's HostStream* is our Place* */
    FILE* file;        /* null for a folder */
    char path[];
} Place;

static int32_t closePlace(HostStream* stream) {
    Place* const place = (Place*)stream;
    if (place->file != NULL && fclose(place->file) != 0) {
        fault(place->path, strerror(errno));
    }
    free(place);
    return 0;
}

static int32_t writePlace(HostStream* stream, const void* data, uint32_t size, uint32_t* written) {
    Place* const place = (Place*)stream;
    *written = (uint32_t)fwrite(data, 1, size, place->file);
    return *written == size ? 0 : fault(place->path, strerror(errno));
}

static Place* newPlace(const char* folder, const char* name) {
    const size_t size = strlen(folder) + strlen(name) + 1;
    Place* const place = need(calloc(1, sizeof *place + size));
    place->stream = (HostStream){.close = closePlace, .write = writePlace};
    snprintf(place->path, size, "%s%s", folder, name);
    return place;
}

HostStream* newOutput(const char* path) {
    return &newPlace(path, "")->stream;
}

enum {
    MaxName = sizeof((StorageSpec*)0)->name / sizeof *((StorageSpec*)0)->name, /* units */
    ClassIdSize = 16,
};

/* Returns whether the name can be used. All names that the module makes are ASCII. */
static int readName(const StorageSpec* spec, char* name) {
    size_t length = 0;
    for (; length < MaxName && spec->name[length] != 0; ++length) {
        if (spec->name[length] >= 0x80 || spec->name[length] == '/') {
            return 0;
        }
        name[length] = (char)spec->name[length];
    }
    return length != 0 && name[0] != '.';
}

/* The root has another record, without a name: its folder is the output's. */
static Place* placeOf(uint32_t type, void* record) {
    char name[MaxName + 2] = "/";
    if (type == IORootStorage) {
        return newPlace(((Place*)((RootStorageSpec*)record)->output)->path, "");
    }
    const char* const folder = ((Place*)((StorageSpec*)record)->parent)->path;
    if (readName(record, name + 1)) {
        return newPlace(folder, name);
    }
    fault(folder, "a stream has a name that no file can have");
    return NULL;
}

int32_t IOCreate(HostStream** handle, uint32_t type, void* record, uint32_t flags) {
    Place* const made = placeOf(type, record);
    (void)flags;
    if (made == NULL) {
        return -1;
    }
    if (type == IOStream) {
        made->file = fopen(made->path, "wb");
    }
    if (type == IOStream ? made->file == NULL : mkdir(made->path, 0777) != 0) {
        fault(made->path, strerror(errno));
        closePlace(&made->stream);
        return -1;
    }
    *handle = &made->stream;
    return 0;
}

/* A folder has no class id: it becomes a file, with a name that no stream has. */
int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t number, const void* information) {
    Place* const made = newPlace(((Place*)handle)->path, "/class-id");
    uint32_t written = 0;
    int32_t status = -1;
    made->file = fopen(made->path, "wb");
    if (type == IORootStorage && number == IOInfoClassId && made->file != NULL) {
        status = writePlace(&made->stream, information, ClassIdSize, &written);
    }
    closePlace(&made->stream);
    return status;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is part of the boundary
uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i) {
        destination[i] = *source;
        source += *source != 0;
    }
    return destination;
}
