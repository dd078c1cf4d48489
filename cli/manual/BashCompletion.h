#ifndef OLMKIT_CLI_MANUAL_BASHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_BASHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// The script by which bash completes the program's arguments. Needs bash 4 and nothing else.
std::string bashCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
