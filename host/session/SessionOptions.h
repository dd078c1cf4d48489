#ifndef OLMKIT_HOST_SESSION_SESSIONOPTIONS_H
#define OLMKIT_HOST_SESSION_SESSIONOPTIONS_H

#include <string>

#include "host/stream/Limits.h"

namespace olmhost {

// How an archive is opened.
struct SessionOptions {
    std::string modulePath; // olmfilter.so; empty: beside the library, or where it is installed
    Limits limits;
};

} // namespace olmhost

#endif
