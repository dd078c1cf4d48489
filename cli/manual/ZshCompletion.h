#ifndef OLMKIT_CLI_MANUAL_ZSHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_ZSHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// The script by which zsh completes the program's arguments. A file for a folder of fpath, to be
// called _olmkit.
std::string zshCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
