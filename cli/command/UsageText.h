#ifndef OLMKIT_CLI_COMMAND_USAGETEXT_H
#define OLMKIT_CLI_COMMAND_USAGETEXT_H

#include <string>

#include <CLI/CLI.hpp>

namespace olmkit {

// Returns the message for wrong arguments: which argument is wrong, how, and where help is.
// `program` is in the state in which parsing failed with `error`.
std::string usageText(const CLI::ParseError& error, const CLI::App& program);

} // namespace olmkit

#endif
