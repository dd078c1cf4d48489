#ifndef OLMKIT_CLI_EXTRACT_ATTACHMENTNAMES_H
#define OLMKIT_CLI_EXTRACT_ATTACHMENTNAMES_H

#include <string>
#include <vector>

#include "cli/extract/ManifestRow.h"

namespace olmkit {

// What the attachments' files of one message are called: the mail's name of each, or else the last
// part of the archive's, made safe and unique among them. Depends on nothing else.
std::vector<std::string> attachmentFileNames(const std::vector<AttachmentRow>& attachments);

} // namespace olmkit

#endif
