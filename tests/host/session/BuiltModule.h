#ifndef OLMKIT_TESTS_HOST_SESSION_BUILTMODULE_H
#define OLMKIT_TESTS_HOST_SESSION_BUILTMODULE_H

#include <cstdlib>
#include <string>

#include "host/session/SessionOptions.h"

namespace olmhost {

// Returns the path of the module of this build.
inline std::string builtModule() {
    return std::string(std::getenv("OLMKIT_BINARY_DIR")) + "/lib/olmfilter.so";
}

// Returns options for a test that is linked with the host's objects, which finds no module beside
// the library.
inline SessionOptions withBuiltModule() {
    SessionOptions options;
    options.modulePath = builtModule();
    return options;
}

} // namespace olmhost

#endif
