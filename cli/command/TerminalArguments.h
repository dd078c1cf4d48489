#ifndef OLMKIT_CLI_COMMAND_TERMINALARGUMENTS_H
#define OLMKIT_CLI_COMMAND_TERMINALARGUMENTS_H

#include <CLI/CLI.hpp>

#include "cli/terminal/TerminalOptions.h"

namespace olmkit {

// Adds the options that every command has. `options` is borrowed and filled while parsing.
void addTerminal(CLI::App& app, TerminalOptions& options);

} // namespace olmkit

#endif
