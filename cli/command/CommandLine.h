#ifndef OLMKIT_CLI_COMMAND_COMMANDLINE_H
#define OLMKIT_CLI_COMMAND_COMMANDLINE_H

#include <string>
#include <variant>

#include "cli/extract/ExtractOptions.h"
#include "cli/info/InfoOptions.h"
#include "cli/merge/MergeOptions.h"
#include "cli/report/ReportOptions.h"
#include "cli/rows/ListOptions.h"
#include "cli/show/ShowOptions.h"
#include "cli/terminal/TerminalOptions.h"
#include "cli/verify/VerifyOptions.h"

namespace olmkit {

// Text to print on standard output, and nothing else to do.
struct HelpText {
    std::string text;
    bool hasHeadings = false; // lines that begin at the margin and end with a colon
};

// What is wrong with the arguments.
struct UsageError {
    std::string text;
};

using Command = std::variant<InfoOptions, ListOptions, ExtractOptions, ShowOptions, ReportOptions,
                             MergeOptions, VerifyOptions, HelpText, UsageError>;

// Reads the program's arguments. Everything that is said about options, commands and exit codes
// comes from their definitions here. `terminal` is filled as far as the arguments can be read.
Command parseCommandLine(int argc, const char* const* argv, TerminalOptions& terminal);

} // namespace olmkit

#endif
