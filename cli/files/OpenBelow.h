#ifndef OLMKIT_CLI_FILES_OPENBELOW_H
#define OLMKIT_CLI_FILES_OPENBELOW_H

#include <string>

namespace olmkit {

// Opens the regular file at `path` below an open folder for reading. `path` is relative, with "/"
// between its levels; no symbolic link is followed, so the file is never outside the folder.
// Returns 0 or an errno value: EINVAL for a path that is absolute or has an empty level, "." or
// "..", ELOOP for a link on the way, EISDIR for a folder, ENODEV for anything else that is not a
// regular file.
int openBelow(int folder, const std::string& path, int& file);

} // namespace olmkit

#endif
