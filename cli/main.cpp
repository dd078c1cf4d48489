#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <variant>

#include "cli/command/CommandLine.h"
#include "cli/command/ExtractCommand.h"
#include "cli/command/InfoCommand.h"
#include "cli/command/ListCommand.h"
#include "cli/command/MergeCommand.h"
#include "cli/command/ReportCommand.h"
#include "cli/command/ShowCommand.h"
#include "cli/command/VerifyCommand.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "cli/terminal/Style.h"

namespace {

using olmkit::ExitCode;

std::string withBoldHeadings(const std::string& text) {
    std::istringstream lines(text);
    std::string styled;
    for (std::string line; std::getline(lines, line);) {
        const bool isHeading = line.ends_with(':') && line.front() != ' ';
        styled += isHeading
                      ? std::string(olmkit::style::bold) + line + std::string(olmkit::style::plain)
                      : line;
        styled += '\n';
    }
    return styled;
}

// Runs the command that the arguments name.
struct Run {
    olmkit::Output& output;
    olmkit::Messages& messages;

    ExitCode operator()(const olmkit::InfoOptions& options) const {
        return olmkit::runInfo(options, output, messages);
    }
    ExitCode operator()(const olmkit::ListOptions& options) const {
        // When nobody reads the rows any more, there is nothing left to do or to undo.
        output.whenClosed([] { std::_Exit(static_cast<int>(ExitCode::Done)); });
        return olmkit::runList(options, output, messages);
    }
    ExitCode operator()(const olmkit::ExtractOptions& options) const {
        return olmkit::runExtract(options, output, messages);
    }
    ExitCode operator()(const olmkit::ShowOptions& options) const {
        return olmkit::runShow(options, output, messages);
    }
    ExitCode operator()(const olmkit::ReportOptions& options) const {
        return olmkit::runReport(options, output, messages);
    }
    ExitCode operator()(const olmkit::MergeOptions& options) const {
        return olmkit::runMerge(options, output, messages);
    }
    ExitCode operator()(const olmkit::VerifyOptions& options) const {
        return olmkit::runVerify(options, output, messages);
    }
    ExitCode operator()(const olmkit::HelpText& help) const {
        output.buffer() +=
            help.hasHeadings && output.isStyled() ? withBoldHeadings(help.text) : help.text;
        if (output.flush()) {
            return ExitCode::Done;
        }
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    ExitCode operator()(const olmkit::UsageError& error) const {
        messages.error(error.text + (error.text.ends_with('?') ? " See" : "; see") +
                       " olmkit --help");
        return ExitCode::Usage;
    }
};

} // namespace

int main(int argc, char** argv) {
    // A write to a pipe that nobody reads, or beyond a limit, is an error and not the end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // No output depends on the machine's zone; and libzip turns every row's date into local time,
    // for which the C library would look for the zone each time.
    setenv("TZ", "UTC0", 1);

    try {
        olmkit::Messages messages;
        olmkit::Output output(STDOUT_FILENO);
        olmkit::TerminalOptions terminal;
        const olmkit::Command command = olmkit::parseCommandLine(argc, argv, terminal);
        messages.setOptions(terminal);
        output.setColor(terminal.color);
        return static_cast<int>(std::visit(Run{output, messages}, command));
    } catch (const std::bad_alloc&) {
        std::fputs("olmkit: there is not enough memory; end other programs and try again\n",
                   stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "olmkit: %s\n", error.what());
    }
    return static_cast<int>(ExitCode::Unreadable);
}
