#ifndef OLMKIT_FILTER_BOUNDARY_HOSTSTREAM_H
#define OLMKIT_FILTER_BOUNDARY_HOSTSTREAM_H

#include "filter/boundary/Layout.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * A handle of the host: an opened archive, an entry, a storage or a stream. Whatever it is, its
 * record begins with these seven operations, and an operation is always reached through the
 * handle's own record. The host owns the record; `close` ends it.
 */
typedef struct HostStream HostStream;

/* What `open` is asked for. */
enum {
    OpenArchive = 39, /* a raw stream as an ArchiveDirectory; request: ArchiveOpenRequest */
    OpenMember = 40   /* an entry of an ArchiveDirectory; request: MemberOpenRequest */
};

/* The mode that goes with both requests. */
enum { OpenModeRead = 9 };

struct HostStream {
    /* Ends the handle. The result is ignored. */
    int32_t (*close)(HostStream* handle);

    /*
     * Reads at most `size` bytes into `buffer` and stores how many came. 0 for success; non-zero
     * at the end of the stream, then without bytes. A count below `size` is no end.
     */
    int32_t (*read)(HostStream* handle, void* buffer, uint32_t size, uint32_t* bytesRead);

    /* Writes `size` bytes and stores how many went. 0 for success. */
    int32_t (*write)(HostStream* handle, const void* data, uint32_t size, uint32_t* bytesWritten);

    /* Moves to `offset` bytes from `origin` (0 start, 1 here, 2 end). The result is ignored. */
    int32_t (*seek)(HostStream* handle, int64_t offset, int32_t origin);

    /* Two operations of the host's own; the module uses neither. */
    void (*reserved0)(void);
    void (*reserved1)(void);

    /*
     * Opens what `request` names and stores its handle in `*handle`; 0 for success. The one
     * operation that is not given the handle it belongs to: for OpenArchive `*handle` holds the
     * raw stream going in, for OpenMember the request names the archive.
     */
    int32_t (*open)(HostStream** handle, uint32_t code, void* request, uint32_t mode);
};

OLM_ASSERT_OFFSET(HostStream, close, 0);
OLM_ASSERT_OFFSET(HostStream, read, 8);
OLM_ASSERT_OFFSET(HostStream, write, 16);
OLM_ASSERT_OFFSET(HostStream, seek, 24);
OLM_ASSERT_OFFSET(HostStream, open, 48);
OLM_ASSERT_SIZE(HostStream, 56);

#ifdef __cplusplus
}
#endif

#endif
