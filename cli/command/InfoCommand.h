#ifndef OLMKIT_CLI_COMMAND_INFOCOMMAND_H
#define OLMKIT_CLI_COMMAND_INFOCOMMAND_H

#include "cli/info/InfoOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// What is in an archive, to `output`. What is wrong in it is a part of that, and makes the exit
// code Partial.
ExitCode runInfo(const InfoOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
