#include "cli/command/CommandLine.h"

#include <functional>
#include <iomanip>
#include <map>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/command/HelpFormatter.h"
#include "cli/command/Suggestion.h"
#include "cli/command/Version.h"
#include "cli/manual/BashCompletion.h"
#include "cli/manual/FishCompletion.h"
#include "cli/manual/ManualPage.h"
#include "cli/manual/ZshCompletion.h"
#include "cli/terminal/ExitCode.h"

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

void addNames(const CLI::App& app, std::vector<std::string>& names) {
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
}

// The commands, and the options that each is read into.
class Program {
public:
    explicit Program(TerminalOptions& terminal)
        : app("Reads OLM archives: lists their items, shows them, and writes them as .msg files.",
              "olmkit") {
        app.formatter(std::make_shared<HelpFormatter>());
        app.set_version_flag("--version", versionText,
                             "Print the versions of the program and its libraries and exit");
        app.set_help_flag("-h,--help", "Print this help and exit");
        addTerminal(app, terminal);
        app.require_subcommand(1);
        app.fallthrough(); // what all commands have may stand behind the command
        add(defineInfo, info);
        add(defineList, list);
        add(defineExtract, extract);
        add(defineShow, show);
        add(defineReport, report);
        add(defineMerge, merge);
        add(defineVerify, verify);
        add(defineCompletion, completion, [this] { return HelpText{completionText()}; });
        add(defineManual, manual,
            [this] { return HelpText{manualPage(outlineOf(app), programVersion)}; });
        app.footer("Examples:\n"
                   "  olmkit info mail.olm\n"
                   "  olmkit list mail.olm\n"
                   "  olmkit extract mail.olm -o messages\n"
                   "  olmkit show mail.olm 7\n"
                   "  olmkit report mail.olm -o mail.html\n"
                   "  olmkit verify messages\n"
                   "\n" +
                   exitCodeText() + "\nolmkit COMMAND --help tells more about a command.\n");
    }

    Command parse(int argc, const char* const* argv) {
        try {
            app.parse(argc, argv);
        } catch (const CLI::CallForVersion&) {
            return HelpText{versionText()};
        } catch (const CLI::CallForHelp&) {
            return HelpText{app.help(), true};
        } catch (const CLI::ParseError& error) {
            return UsageError{errorText(error)};
        }
        return commands.at(app.get_subcommands().front()->get_name())();
    }

private:
    template <typename Options> void add(void (*define)(CLI::App&, Options&), Options& options) {
        add(define, options, [&options] { return options; });
    }
    template <typename Options>
    void add(void (*define)(CLI::App&, Options&), Options& options,
             std::function<Command()> command) {
        define(app, options);
        CLI::App* defined = app.get_subcommands(nullptr).back();
        defined->group("Commands");
        commands[defined->get_name()] = std::move(command);
    }

    std::string completionText() const {
        switch (completion.shell) {
        case Shell::Zsh:
            return zshCompletion(outlineOf(app));
        case Shell::Fish:
            return fishCompletion(outlineOf(app));
        case Shell::Bash:
            break;
        }
        return bashCompletion(outlineOf(app));
    }

    // What is mistyped is left over, and counts for more than what is missing in its place.
    std::string errorText(const CLI::ParseError& error) const {
        const bool isOfArguments =
            error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError) ||
            error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
        if (isOfArguments) {
            for (const std::string& left : app.remaining(true)) {
                if (left.size() > 1 && left.front() == '-') {
                    return unknownOption(left.substr(0, left.find('=')));
                }
                if (app.get_subcommands().empty()) {
                    return unknownCommand(left);
                }
            }
        }
        return error.what();
    }

    std::string unknownOption(const std::string& name) const {
        std::vector<std::string> names;
        std::string text = "there is no option '" + name + "'";
        for (const CLI::App* command : app.get_subcommands()) {
            addNames(*command, names);
            text += " of " + command->get_name();
        }
        addNames(app, names);
        return text + didYouMean(nearestName(name, names));
    }

    std::string unknownCommand(const std::string& name) const {
        std::vector<std::string> names;
        std::string all;
        for (const CLI::App* command : app.get_subcommands(nullptr)) {
            names.push_back(command->get_name());
            all += " " + command->get_name();
        }
        const std::string nearest = nearestName(name, names);
        return "there is no command '" + name + "'" +
               (nearest.empty() ? "; the commands are" + all : didYouMean(nearest));
    }

    static std::string didYouMean(const std::string& name) {
        return name.empty() ? "" : "; did you mean '" + name + "'?";
    }

    CLI::App app;
    std::map<std::string, std::function<Command()>> commands;
    InfoOptions info;
    ListOptions list;
    ExtractOptions extract;
    ShowOptions show;
    ReportOptions report;
    MergeOptions merge;
    VerifyOptions verify;
    CompletionOptions completion;
    ManualOptions manual;
};

} // namespace

Command parseCommandLine(int argc, const char* const* argv, TerminalOptions& terminal) {
    return Program(terminal).parse(argc, argv);
}

} // namespace olmkit
