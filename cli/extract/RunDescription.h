#ifndef OLMKIT_CLI_EXTRACT_RUNDESCRIPTION_H
#define OLMKIT_CLI_EXTRACT_RUNDESCRIPTION_H

#include "cli/extract/ExtractOptions.h"
#include "cli/manifest/RunRecord.h"
#include "host/session/Session.h"

namespace olmkit {

// Returns the record of a run: of the options it holds those that change what is written, of the
// archive a hash of its directory. `session` is open.
RunRecord describeRun(const ExtractOptions& options, const olmhost::Session& session);

} // namespace olmkit

#endif
