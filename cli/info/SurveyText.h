#ifndef OLMKIT_CLI_INFO_SURVEYTEXT_H
#define OLMKIT_CLI_INFO_SURVEYTEXT_H

#include <string>

#include "cli/info/ArchiveSurvey.h"

namespace olmkit {

// Appends a report for people: a block a subject, blocks that would be empty left out. What could
// act on a terminal is taken out of the archive's texts.
void appendReport(std::string& out, const ArchiveSurvey& report);

// The last blocks alone, each behind an empty line: documents without their items in the list, what
// is encrypted, damaged or not readable.
void appendFindings(std::string& out, const ArchiveSurvey& report);

// How many attachments there are, and how many of them are missing; empty for none.
std::string attachmentCount(const ArchiveSurvey& report);

} // namespace olmkit

#endif
