#ifndef OLMKIT_CLI_COMMAND_VERSION_H
#define OLMKIT_CLI_COMMAND_VERSION_H

#include <string>

namespace olmkit {

// Returns the program's version on the first line, then one line for each library: the version that
// is loaded, or, for a library of headers only, the one that was compiled in.
std::string versionText();

} // namespace olmkit

#endif
