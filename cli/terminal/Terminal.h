#ifndef OLMKIT_CLI_TERMINAL_TERMINAL_H
#define OLMKIT_CLI_TERMINAL_TERMINAL_H

#include "cli/terminal/TerminalOptions.h"

namespace olmkit {

// Columns where no terminal tells them.
inline constexpr unsigned usualWidth = 80;

// Columns of the terminal behind a file descriptor at this moment, 0 when it is none.
unsigned terminalWidth(int descriptor);

// Whether a terminal that obeys control sequences is behind a file descriptor.
bool isSmartTerminal(int descriptor);

// Whether what goes to a file descriptor is coloured. NO_COLOR in the environment decides only for
// Auto.
bool isColored(ColorMode mode, int descriptor);

} // namespace olmkit

#endif
