#ifndef OLMKIT_CLI_COMMAND_SHOWCOMMAND_H
#define OLMKIT_CLI_COMMAND_SHOWCOMMAND_H

#include "cli/show/ShowOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// What the message of one item holds, to `output`; to people, what was lost on the way to it.
ExitCode runShow(const ShowOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
