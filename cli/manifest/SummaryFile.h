#ifndef OLMKIT_CLI_MANIFEST_SUMMARYFILE_H
#define OLMKIT_CLI_MANIFEST_SUMMARYFILE_H

#include <optional>
#include <string>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestSeal.h"
#include "cli/manifest/SummaryNumbers.h"

namespace olmkit {

// Writes runfile::summary, which appears under its name when it is complete. `seal` is that of the
// manifest. Returns 0 or an errno value.
int writeSummary(const SummaryNumbers& numbers, const ManifestSeal& seal,
                 OutputDirectory& directory);

// Reads the text of such a file. Findings are not read: they are found again. Returns nothing when
// the text is not a summary.
std::optional<SummaryNumbers> readSummary(const std::string& text);

// Reads the seal of the manifest in the text of such a file. Returns nothing when there is none.
std::optional<ManifestSeal> readSeal(const std::string& text);

} // namespace olmkit

#endif
