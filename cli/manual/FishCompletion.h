#ifndef OLMKIT_CLI_MANUAL_FISHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_FISHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// Returns the script by which fish completes the program's arguments. It needs fish 3.
std::string fishCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
