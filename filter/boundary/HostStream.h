#ifndef OLMKIT_FILTER_BOUNDARY_HOSTSTREAM_H
#define OLMKIT_FILTER_BOUNDARY_HOSTSTREAM_H

/*
 * Handles of the host: opened archives, entries of an archive, storages and streams. The host
 * implements them.
 */

#include "filter/boundary/Layout.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct HostStream HostStream;

/*
 * The record of a handle begins with these seven operations, whatever the handle is. The module
 * calls an operation only through the record of the handle itself. The host owns the record.
 */
struct HostStream {
    /* Ends the handle, which is not used after this call. The result is ignored. */
    int32_t (*close)(HostStream* handle);

    /*
     * Reads at most `size` bytes into `buffer` and stores their number in `*bytesRead`. Returns 0
     * for success and non-zero at the end of the stream, then without any byte. A number below
     * `size` does not mean the end.
     */
    int32_t (*read)(HostStream* handle, void* buffer, uint32_t size, uint32_t* bytesRead);

    /*
     * Writes `size` bytes from `data` and stores the number of bytes written in `*bytesWritten`.
     * Returns 0 for success.
     */
    int32_t (*write)(HostStream* handle, const void* data, uint32_t size, uint32_t* bytesWritten);

    /*
     * Moves to `offset` bytes from `origin`: 0 is the start, 1 the current position, 2 the end.
     * The result is ignored.
     */
    int32_t (*seek)(HostStream* handle, int64_t offset, int32_t origin);

    /* Two operations of the host that the module never calls. */
    void (*reserved0)(void);
    void (*reserved1)(void);

    /*
     * Opens what `request` describes and stores its handle in `*handle`. `code` is OpenArchive or
     * OpenMember, `mode` is OpenModeRead. Returns 0 for success. This operation alone is not given
     * the handle that it belongs to: for OpenArchive `*handle` is the raw stream when the call
     * begins, for OpenMember the request contains the archive.
     */
    int32_t (*open)(HostStream** handle, uint32_t code, void* request, uint32_t mode);
};

OLM_ASSERT_OFFSET(HostStream, close, 0);
OLM_ASSERT_OFFSET(HostStream, read, 8);
OLM_ASSERT_OFFSET(HostStream, write, 16);
OLM_ASSERT_OFFSET(HostStream, seek, 24);
OLM_ASSERT_OFFSET(HostStream, open, 48);
OLM_ASSERT_SIZE(HostStream, 56);

/* Codes of `open`. */
enum {
    OpenArchive = 39, /* a raw stream as an ArchiveDirectory; request: ArchiveOpenRequest */
    OpenMember = 40   /* an entry of an ArchiveDirectory; request: MemberOpenRequest */
};

/* The mode of `open` for both codes. */
enum { OpenModeRead = 9 };

#ifdef __cplusplus
}
#endif

#endif
