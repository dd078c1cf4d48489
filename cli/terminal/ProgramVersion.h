#ifndef OLMKIT_CLI_TERMINAL_PROGRAMVERSION_H
#define OLMKIT_CLI_TERMINAL_PROGRAMVERSION_H

namespace olmkit {

// The version of the program: "1.2.3".
inline constexpr const char* programVersion = OLMKIT_VERSION;

} // namespace olmkit

#endif
