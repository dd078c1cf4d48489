#ifndef OLMKIT_CLI_LISTCOMMAND_H
#define OLMKIT_CLI_LISTCOMMAND_H

#include "cli/ExitCode.h"
#include "cli/ListOptions.h"
#include "cli/Messages.h"
#include "cli/Output.h"

namespace olmkit {

// Rows to `output` in index order; one message for each entry that can't be read.
ExitCode runList(const ListOptions& options, Output& output, Messages& messages);

} // namespace olmkit

#endif
