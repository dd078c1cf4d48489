#ifndef OLMKIT_CLI_COMMAND_EXTRACTCOMMAND_H
#define OLMKIT_CLI_COMMAND_EXTRACTCOMMAND_H

#include "cli/extract/ExtractOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// Writes the messages of the wanted items and the manifest below options.directory, one message to
// people for each item that failed and each entry that can't be read, and a summary to `output`.
ExitCode runExtract(const ExtractOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
