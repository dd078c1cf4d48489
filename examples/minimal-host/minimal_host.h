#ifndef OLMKIT_EXAMPLES_MINIMAL_HOST_MINIMAL_HOST_H
#define OLMKIT_EXAMPLES_MINIMAL_HOST_MINIMAL_HOST_H

#include "filter/olmfilter.h"

/* Tells of a failure, which makes the exit status 1. Gives -1, the status of one that failed. */
int32_t fault(const char* what, const char* why);

/* The block itself; ends the program when there was no memory for it. */
void* need(void* block);

/* The raw stream that VwStreamOpen takes, of a file with that path. Its `close` ends it. */
HostStream* newFile(const char* path);

/* What the archive's file, or an entry of it, is called in messages. */
const char* nameOf(HostStream* source);

/* An output for one message, which becomes a folder of that path. Its `close` ends the handle. */
HostStream* newOutput(const char* path);

#endif
