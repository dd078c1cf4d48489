/*
 * What the module writes a message to: storages are folders here, streams are files.
 *
 * A request that fails leaves its handles open; here the program's end closes them. Better: keep a
 * list of them, and write a compound file (MS-CFB), which is what mail programs read.
 */
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "minimal_host.h"

typedef struct Place {
    HostStream stream; /* comes first: the module's HostStream* is our Place* */
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

/* Names are plain ASCII in everything that the module makes; others are refused. */
static int readName(const StorageSpec* wanted, char* name) {
    const size_t most = sizeof wanted->name / sizeof *wanted->name;
    size_t length = 0;
    for (; length < most && wanted->name[length] != 0; ++length) {
        if (wanted->name[length] >= 0x80 || wanted->name[length] == '/') {
            return 0;
        }
        name[length] = (char)wanted->name[length];
    }
    return length != 0 && name[0] != '.';
}

/* The root's record is another one, so it takes the folder that the output names. */
static Place* placeOf(uint32_t type, void* record) {
    char name[130] = "/";
    if (type == IORootStorage) {
        return newPlace(((Place*)((RootStorageSpec*)record)->output)->path, "");
    }
    const char* const folder = ((Place*)((StorageSpec*)record)->parent)->path;
    if (readName(record, name + 1)) {
        return newPlace(folder, name);
    }
    fault(folder, "can't hold a stream of that name");
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

/* A folder has no class id: it becomes a file, under a name that no stream has. */
int32_t IOSetInfo(HostStream* handle, uint32_t type, uint32_t number, const void* information) {
    Place* const made = newPlace(((Place*)handle)->path, "/class-id");
    uint32_t written = 0;
    int32_t status = -1;
    made->file = fopen(made->path, "wb");
    if (type == IORootStorage && number == IOInfoClassId && made->file != NULL) {
        status = writePlace(&made->stream, information, 16, &written);
    }
    closePlace(&made->stream);
    return status;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the boundary's
uint16_t* _UTwstrncpy(uint16_t* destination, const uint16_t* source, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i) {
        destination[i] = *source;
        source += *source != 0;
    }
    return destination;
}
