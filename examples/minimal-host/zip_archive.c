/*
 * The archive that the module reads, with libzip.
 *
 * Better: set limits against small files that inflate to huge ones; find entries by names in any
 * Unicode form, and with "\" for "/".
 */
#include <stdlib.h>
#include <string.h>

#include <zip.h>

#include "minimal_host.h"

/* The archive's file, or one of its entries. */
typedef struct Source {
    HostStream stream;  /* must be first: the module's HostStream* is our Source* */
    zip_file_t* member; /* null for the file */
    char path[];        /* in the file system or in the archive */
} Source;

const char* nameOf(HostStream* source) {
    return ((Source*)source)->path;
}

static int32_t closeSource(HostStream* stream) {
    Source* const source = (Source*)stream;
    if (source->member != NULL) {
        zip_fclose(source->member);
    }
    free(source);
    return 0;
}

static int32_t readMember(HostStream* stream, void* buffer, uint32_t size, uint32_t* bytesRead) {
    const zip_int64_t count = zip_fread(((Source*)stream)->member, buffer, size);
    *bytesRead = count > 0 ? (uint32_t)count : 0;
    return count < 0 ? fault(nameOf(stream), "is damaged or can't be read") : count == 0;
}

/* No `seek`: the module seeks only in documents of a kind that it doesn't list. */
static Source* newSource(const char* path) {
    const size_t size = strlen(path) + 1;
    Source* const source = need(calloc(1, sizeof *source + size));
    source->stream.close = closeSource;
    memcpy(source->path, path, size);
    return source;
}

typedef struct Archive {
    ArchiveDirectory directory;
    zip_t* zip;
} Archive;

static int32_t closeArchive(HostStream* stream) {
    Archive* const archive = (Archive*)stream;
    zip_discard(archive->zip);
    free((void*)archive->directory.entries);
    free((void*)archive->directory.namePool);
    free(archive);
    return 0;
}

static int32_t openMember(HostStream** handle, uint32_t code, void* request, uint32_t mode) {
    const MemberOpenRequest* const member = request;
    zip_t* const zip = ((Archive*)member->archive)->zip;
    const ArchiveDirectory* const directory = member->archive;
    const char* name = member->name;
    zip_int64_t index = member->entryIndex;
    if (index == MEMBER_BY_NAME) {
        index = zip_name_locate(zip, name, 0);
    } else {
        name = directory->namePool + directory->entries[index].nameOffset;
    }
    zip_file_t* const file = index < 0 ? NULL : zip_fopen_index(zip, (zip_uint64_t)index, 0);
    if (code != OpenMember || mode != OpenModeRead || file == NULL) {
        return fault(name, zip_strerror(zip));
    }
    Source* const made = newSource(name);
    made->stream.read = readMember;
    made->member = file;
    *handle = &made->stream;
    return 0;
}

/* Reads the entries and names of the directory, which the archive owns. */
static void readDirectory(Archive* archive) {
    const uint64_t count = (uint64_t)zip_get_num_entries(archive->zip, 0);
    ArchiveEntry* const entries = need(calloc(count + 1, sizeof *entries));
    char* names = NULL;
    size_t used = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const char* const name = zip_get_name(archive->zip, i, 0); /* always UTF-8 */
        const size_t size = (name == NULL ? 0 : strlen(name)) + 1;
        names = need(realloc(names, used + size));
        memcpy(names + used, name == NULL ? "" : name, size);
        entries[i].nameOffset = (uint32_t)used;
        entries[i].nameLength = (uint16_t)(size - 1);
        used += size;
    }
    archive->directory.entries = entries;
    archive->directory.entryCount = count;
    archive->directory.namePool = names;
}

/*
 * `*handle` is the raw stream on entry and the archive on return. Better: set ArchiveDamaged or
 * ArchiveEncrypted in the request's flags, so that VwStreamOpen can report them.
 */
static int32_t openArchive(HostStream** handle, uint32_t code, void* request, uint32_t mode) {
    (void)request;
    zip_t* const zip = zip_open(nameOf(*handle), ZIP_RDONLY, NULL);
    if (code != OpenArchive || mode != OpenModeRead || zip == NULL) {
        return fault(nameOf(*handle), "is not a ZIP archive or can't be read");
    }
    Archive* const archive = need(calloc(1, sizeof *archive));
    archive->directory.stream = (HostStream){.close = closeArchive, .open = openMember};
    archive->zip = zip;
    readDirectory(archive);
    *handle = &archive->directory.stream;
    return 0;
}

HostStream* newFile(const char* path) {
    Source* const file = newSource(path);
    file->stream.open = openArchive;
    return &file->stream;
}
