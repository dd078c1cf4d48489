#ifndef OLMKIT_CLI_COMMAND_VERIFYCOMMAND_H
#define OLMKIT_CLI_COMMAND_VERIFYCOMMAND_H

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "cli/verify/VerifyOptions.h"

namespace olmkit {

// Compares the files below options.directory with the manifest there: what differs, and how much
// there is, goes to `output`. Changes nothing.
ExitCode runVerify(const VerifyOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
