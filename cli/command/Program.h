#ifndef OLMKIT_CLI_COMMAND_PROGRAM_H
#define OLMKIT_CLI_COMMAND_PROGRAM_H

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// Runs what the program's arguments ask for: a command, help or the versions. Wrong arguments get a
// message and ExitCode::Usage.
ExitCode runProgram(int argc, const char* const* argv, Output& output, Messages& messages);

} // namespace olmkit

#endif
