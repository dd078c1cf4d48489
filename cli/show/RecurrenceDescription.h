#ifndef OLMKIT_CLI_SHOW_RECURRENCEDESCRIPTION_H
#define OLMKIT_CLI_SHOW_RECURRENCEDESCRIPTION_H

#include "cli/rows/JsonLine.h"
#include "host/message/Recurrence.h"

namespace olmkit {

// Returns a recurrence as an object. Days and times are strings in ISO 8601 without a zone, in the
// item's local time; what a pattern doesn't have is null.
JsonObject describeRecurrence(const olmhost::Recurrence& recurrence);

} // namespace olmkit

#endif
