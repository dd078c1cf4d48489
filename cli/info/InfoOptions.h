#ifndef OLMKIT_CLI_INFO_INFOOPTIONS_H
#define OLMKIT_CLI_INFO_INFOOPTIONS_H

#include <string>

namespace olmkit {

struct InfoOptions {
    std::string archive;
    bool isJson = false;
    bool isChecking = false; // read the data of every entry
};

} // namespace olmkit

#endif
