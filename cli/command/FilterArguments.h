#ifndef OLMKIT_CLI_COMMAND_FILTERARGUMENTS_H
#define OLMKIT_CLI_COMMAND_FILTERARGUMENTS_H

#include <CLI/CLI.hpp>

#include "cli/rows/FilterOptions.h"

namespace olmkit {

// Adds the options that restrict a command to some items. `options` is borrowed and filled while
// parsing.
void addFilter(CLI::App& command, FilterOptions& options);

} // namespace olmkit

#endif
