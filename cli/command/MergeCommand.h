#ifndef OLMKIT_CLI_COMMAND_MERGECOMMAND_H
#define OLMKIT_CLI_COMMAND_MERGECOMMAND_H

#include "cli/merge/MergeOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// Joins the shards' folders, tells people what keeps them apart, and writes a summary to `output`.
ExitCode runMerge(const MergeOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
