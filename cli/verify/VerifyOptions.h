#ifndef OLMKIT_CLI_VERIFY_VERIFYOPTIONS_H
#define OLMKIT_CLI_VERIFY_VERIFYOPTIONS_H

#include <string>

namespace olmkit {

struct VerifyOptions {
    std::string directory;
    bool strict = false; // files that the manifest doesn't list are differences too
    bool json = false;
};

} // namespace olmkit

#endif
