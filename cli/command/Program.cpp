#include "cli/command/Program.h"

#include <algorithm>
#include <functional>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command/Commands.h"
#include "cli/command/HelpFormatter.h"
#include "cli/command/TerminalArguments.h"
#include "cli/command/UsageText.h"
#include "cli/command/Version.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Style.h"

namespace olmkit {

namespace {

std::string exitCodeText() {
    std::ostringstream text;
    text << "Exit codes:\n";
    for (const ExitRow& row : exitRows()) {
        text << "  " << std::left << std::setw(5) << static_cast<int>(row.code) << row.meaning
             << "\n";
    }
    return text.str();
}

// A heading is a line that begins at the margin and ends with a colon.
std::string withBoldHeadings(const std::string& text) {
    std::istringstream lines(text);
    std::string styled;
    for (std::string line; std::getline(lines, line);) {
        const bool isHeading = line.ends_with(':') && line.front() != ' ';
        styled += isHeading ? std::string(style::bold) + line + std::string(style::plain) : line;
        styled += '\n';
    }
    return styled;
}

// The commands, and the options that all of them have. Everything that help, completions, the
// manual page and messages say about the arguments is made from these definitions.
class Program {
public:
    Program();

    ExitCode run(int argc, const char* const* argv, Output& output, Messages& messages);

private:
    struct DefinedCommand {
        std::unique_ptr<Command> command;
        const CLI::App* subcommand;
    };

    ExitCode runCommand(Output& output, Messages& messages);
    ExitCode printHelp(Output& output, Messages& messages) const;

    TerminalOptions terminal;
    std::vector<DefinedCommand> commands;
    CLI::App app;
};

Program::Program()
    : app("Reads OLM archives: lists their items, shows them, and writes them as .msg files.",
          "olmkit") {
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_version_flag("--version", versionText,
                         "Print the versions of the program and its libraries and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    addTerminal(app, terminal);
    app.require_subcommand(1);
    app.fallthrough(); // the options of every command may come after the command
    for (std::unique_ptr<Command>& command : makeCommands()) {
        CLI::App* subcommand = command->define(app)->group("Commands");
        commands.push_back({std::move(command), subcommand});
    }
    app.footer("Examples:\n"
               "  olmkit info mail.olm\n"
               "  olmkit list mail.olm\n"
               "  olmkit extract mail.olm -o messages\n"
               "  olmkit show mail.olm 7\n"
               "  olmkit report mail.olm -o mail.html\n"
               "  olmkit verify messages\n"
               "\n" +
               exitCodeText() + "\nolmkit COMMAND --help describes a command and its options.\n");
}

ExitCode Program::run(int argc, const char* const* argv, Output& output, Messages& messages) {
    std::function<ExitCode()> act;
    try {
        app.parse(argc, argv);
        act = [&] { return runCommand(output, messages); };
    } catch (const CLI::CallForVersion&) {
        act = [&] {
            output.buffer() += versionText();
            return output.finish(ExitCode::Done, messages);
        };
    } catch (const CLI::CallForHelp&) {
        act = [&] { return printHelp(output, messages); };
    } catch (const CLI::ParseError& error) {
        act = [&, text = usageText(error, app)] {
            messages.error(text);
            return ExitCode::Usage;
        };
    }
    // Also after an error: its message is coloured as the arguments ask.
    messages.setOptions(terminal);
    output.setColor(terminal.color);
    return act();
}

ExitCode Program::runCommand(Output& output, Messages& messages) {
    const auto chosen = std::ranges::find_if(
        commands, [](const DefinedCommand& command) { return command.subcommand->parsed(); });
    Interrupt::endAtOnce();
    return chosen->command->run(output, messages);
}

ExitCode Program::printHelp(Output& output, Messages& messages) const {
    const std::string help = app.help();
    output.buffer() += output.isStyled() ? withBoldHeadings(help) : help;
    return output.finish(ExitCode::Done, messages);
}

} // namespace

ExitCode runProgram(int argc, const char* const* argv, Output& output, Messages& messages) {
    return Program().run(argc, argv, output, messages);
}

} // namespace olmkit
