#ifndef OLMKIT_CLI_COMMAND_VERSION_H
#define OLMKIT_CLI_COMMAND_VERSION_H

#include <string>

#include "cli/terminal/ProgramVersion.h"

namespace olmkit {

// The program's version on the first line, then a line for each library: those in use now, or,
// for what has no file of its own, the one that was compiled in.
std::string versionText();

} // namespace olmkit

#endif
