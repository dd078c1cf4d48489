#ifndef OLMKIT_CLI_COMMAND_COMMANDS_H
#define OLMKIT_CLI_COMMAND_COMMANDS_H

#include <memory>
#include <vector>

#include "cli/command/Command.h"

namespace olmkit {

// Returns all commands of the program, in the order in which help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();

} // namespace olmkit

#endif
