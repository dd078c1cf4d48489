#ifndef OLMKIT_CLI_MANIFEST_SUMMARYTABLE_H
#define OLMKIT_CLI_MANIFEST_SUMMARYTABLE_H

#include <string>

#include "cli/manifest/SummaryNumbers.h"

namespace olmkit {

// Returns the lines that an extraction ends with: one for each kind of item, one for attachments.
// Empty for anything but a whole extraction, and when there is nothing to count.
std::string summaryTable(const SummaryNumbers& numbers);

} // namespace olmkit

#endif
