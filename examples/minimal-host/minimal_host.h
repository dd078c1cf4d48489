#ifndef OLMKIT_EXAMPLES_MINIMAL_HOST_MINIMAL_HOST_H
#define OLMKIT_EXAMPLES_MINIMAL_HOST_MINIMAL_HOST_H

#include "filter/olmfilter.h"

/* Reports a failure, which makes the exit status 1. Returns -1, the status of a failed call. */
int32_t fault(const char* what, const char* why);

/* Returns the block, which must be newly allocated; ends the program when it is null. */
void* need(void* block);

/* Returns the raw stream of the file at `path`, for VwStreamOpen. Its `close` frees it. */
HostStream* newFile(const char* path);

/* Returns the name of an archive's file, or of one of its entries, for messages. */
const char* nameOf(HostStream* source);

/* Returns an output for one message, which becomes a folder at `path`. Its `close` frees it. */
HostStream* newOutput(const char* path);

#endif
