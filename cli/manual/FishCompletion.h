#ifndef OLMKIT_CLI_MANUAL_FISHCOMPLETION_H
#define OLMKIT_CLI_MANUAL_FISHCOMPLETION_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// The script by which fish completes the program's arguments. Needs fish 3.
std::string fishCompletion(const ProgramOutline& program);

} // namespace olmkit

#endif
