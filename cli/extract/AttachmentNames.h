#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTNAMES_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTNAMES_H

#include <string>
#include <vector>

#include "cli/manifest/ManifestRow.h"

namespace olmkit {

// Returns the file names of a message's attachments: the name in the mail, or else the last part of
// the entry's name, made safe and unique. The names depend on nothing else.
std::vector<std::string> attachmentFileNames(const std::vector<AttachmentRow>& attachments);

} // namespace olmkit

#endif
