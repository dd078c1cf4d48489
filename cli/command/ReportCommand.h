#ifndef OLMKIT_CLI_COMMAND_REPORTCOMMAND_H
#define OLMKIT_CLI_COMMAND_REPORTCOMMAND_H

#include "cli/report/ReportOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// Writes a page about an archive to a file; what has been written goes to `output`. What is wrong
// in the archive is a part of the page, and makes the exit code Partial.
ExitCode runReport(const ReportOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
