#ifndef OLMKIT_CLI_COMMAND_COMMAND_H
#define OLMKIT_CLI_COMMAND_COMMAND_H

#include <CLI/CLI.hpp>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// A command of the program: its arguments, and what it does with them.
//
// Each command is a class in a source file of its own, and a row of the table in Commands.cpp.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    // Adds the subcommand to `program`, with its arguments and a footer of examples, and returns
    // it. Parsing stores the arguments in this object, which outlives `program`.
    virtual CLI::App* define(CLI::App& program) = 0;

    // Runs the command on the parsed arguments: results go to `output`, everything else to
    // `messages`. Signals end the process at once, unless the command asks for something else.
    virtual ExitCode run(Output& output, Messages& messages) = 0;
};

} // namespace olmkit

#endif
