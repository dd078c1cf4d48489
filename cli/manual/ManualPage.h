#ifndef OLMKIT_CLI_MANUAL_MANUALPAGE_H
#define OLMKIT_CLI_MANUAL_MANUALPAGE_H

#include <string>

#include "cli/manual/Outline.h"

namespace olmkit {

// Returns the manual page, in roff with the "man" macros.
std::string manualPage(const ProgramOutline& program, const std::string& version);

} // namespace olmkit

#endif
