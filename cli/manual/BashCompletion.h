#ifndef OLMKIT_CLI_MANUAL_BASHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_BASHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// Returns the script by which bash completes the program's arguments. It needs only bash 4.
std::string bashCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
