#ifndef OLMKIT_CLI_FILES_OPENBELOW_H
#define OLMKIT_CLI_FILES_OPENBELOW_H

#include <string>

namespace olmkit {

// Opens the file at `path`, its levels parted by "/", below an open folder, for reading. Follows no
// link, and leads nowhere but below. 0 or an errno value: EINVAL for a path that isn't relative or
// has an empty level, "." or "..", ELOOP for a link on the way, EISDIR for a folder and ENODEV for
// anything else that is no file.
int openBelow(int folder, const std::string& path, int& file);

} // namespace olmkit

#endif
