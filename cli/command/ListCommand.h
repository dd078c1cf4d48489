#ifndef OLMKIT_CLI_COMMAND_LISTCOMMAND_H
#define OLMKIT_CLI_COMMAND_LISTCOMMAND_H

#include "cli/rows/ListOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// Rows to `output` in index order; one message for each entry that can't be read.
ExitCode runList(const ListOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
