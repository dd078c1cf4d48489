#ifndef OLMKIT_CLI_TERMINAL_STYLE_H
#define OLMKIT_CLI_TERMINAL_STYLE_H

#include <string_view>

namespace olmkit::style {

// Control sequences of terminals.
inline constexpr std::string_view bold = "\x1B[1m";
inline constexpr std::string_view boldRed = "\x1B[1;31m";
inline constexpr std::string_view boldYellow = "\x1B[1;33m";
inline constexpr std::string_view plain = "\x1B[0m";
inline constexpr std::string_view emptyLine = "\r\x1B[K"; // moves to its start and clears it

} // namespace olmkit::style

#endif
