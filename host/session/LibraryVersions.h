#ifndef OLMKIT_HOST_SESSION_LIBRARYVERSIONS_H
#define OLMKIT_HOST_SESSION_LIBRARYVERSIONS_H

#include <string>
#include <vector>

#include "host/stream/Export.h"

namespace olmhost {

struct LibraryVersion {
    std::string name;
    std::string version;
};

// Returns the libraries that the host uses, with the versions loaded in this process.
OLMHOST_EXPORT std::vector<LibraryVersion> libraryVersions();

} // namespace olmhost

#endif
