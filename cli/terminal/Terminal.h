#ifndef OLMKIT_CLI_TERMINAL_TERMINAL_H
#define OLMKIT_CLI_TERMINAL_TERMINAL_H

#include "cli/terminal/TerminalOptions.h"

namespace olmkit {

// The width in columns where no terminal reports one.
inline constexpr unsigned defaultWidth = 80;

// Returns the current width in columns of the terminal that a file descriptor refers to, 0 when it
// is not a terminal.
unsigned terminalWidth(int descriptor);

// Returns whether a file descriptor refers to a terminal that obeys control sequences.
bool isSmartTerminal(int descriptor);

// Returns whether text for a file descriptor is coloured. The environment's NO_COLOR counts for
// Auto only.
bool isColored(ColorMode mode, int descriptor);

} // namespace olmkit

#endif
