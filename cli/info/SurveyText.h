#ifndef OLMKIT_CLI_INFO_SURVEYTEXT_H
#define OLMKIT_CLI_INFO_SURVEYTEXT_H

#include <string>

#include "cli/info/ArchiveSurvey.h"

namespace olmkit {

// Appends a survey as text, in blocks by subject; empty blocks are left out. Control characters in
// the archive's texts are replaced.
void appendSurvey(std::string& out, const ArchiveSurvey& survey);

// Appends only the last blocks, each after an empty line: documents whose items are not listed,
// and entries that are encrypted, damaged or unreadable.
void appendFindings(std::string& out, const ArchiveSurvey& survey);

// Returns how many attachments there are and how many are missing; empty for none.
std::string attachmentCount(const ArchiveSurvey& survey);

} // namespace olmkit

#endif
