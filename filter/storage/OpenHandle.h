#ifndef OLMKIT_FILTER_STORAGE_OPENHANDLE_H
#define OLMKIT_FILTER_STORAGE_OPENHANDLE_H

#include <memory>

#include "filter/boundary/HostStream.h"

struct CloseHandle {
    void operator()(HostStream* handle) const { handle->close(handle); }
};

// Owns a handle of the host, or null, and closes it.
using OpenHandle = std::unique_ptr<HostStream, CloseHandle>;

#endif
