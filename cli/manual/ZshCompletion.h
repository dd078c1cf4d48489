#ifndef OLMKIT_CLI_MANUAL_ZSHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_ZSHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// Returns the script by which zsh completes the program's arguments. It is the contents of a file
// _olmkit in a folder of fpath.
std::string zshCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
