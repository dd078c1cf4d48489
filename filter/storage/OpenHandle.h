#ifndef OLMKIT_FILTER_STORAGE_OPENHANDLE_H
#define OLMKIT_FILTER_STORAGE_OPENHANDLE_H

#include <memory>

#include "filter/boundary/HostStream.h"

struct CloseHandle {
    void operator()(HostStream* handle) const { handle->close(handle); }
};

// Owns a handle of the host and closes it at the end, also when an exception passes. May be null.
using OpenHandle = std::unique_ptr<HostStream, CloseHandle>;

#endif
