#include "cli/command/CommandLine.h"

#include <iomanip>
#include <map>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/command/ExitCode.h"

namespace olmkit {

namespace {

constexpr const char* versionText = "olmkit " OLMKIT_VERSION;

std::string exitCodeText() {
    std::ostringstream text;
    text << "Exit codes:\n";
    for (const ExitRow& row : exitRows()) {
        text << "  " << std::left << std::setw(5) << static_cast<int>(row.code) << row.meaning
             << "\n";
    }
    return text.str();
}

// The commands, and the options that each is read into.
class Program {
public:
    Program()
        : app("Reads OLM archives: lists their items, shows them, and writes them as .msg files.",
              "olmkit") {
        app.set_version_flag("--version", versionText, "Print the version and exit");
        app.set_help_flag("-h,--help", "Print this help and exit");
        app.require_subcommand(1);
        add(defineInfo, info);
        add(defineList, list);
        add(defineExtract, extract);
        add(defineShow, show);
        add(defineMerge, merge);
        add(defineVerify, verify);
        app.footer("Examples:\n"
                   "  olmkit info mail.olm\n"
                   "  olmkit list mail.olm\n"
                   "  olmkit extract mail.olm -o messages\n"
                   "  olmkit show mail.olm 7\n"
                   "  olmkit verify messages\n"
                   "\n" +
                   exitCodeText() + "\nolmkit COMMAND --help tells more about a command.\n");
    }

    Command parse(int argc, const char* const* argv) {
        try {
            app.parse(argc, argv);
        } catch (const CLI::CallForVersion&) {
            return HelpText{std::string(versionText) + "\n"};
        } catch (const CLI::CallForHelp&) {
            return HelpText{app.help()};
        } catch (const CLI::ParseError& error) {
            return UsageError{errorText(error)};
        }
        return commands.at(app.get_subcommands().front()->get_name())();
    }

private:
    template <typename Options> void add(void (*define)(CLI::App&, Options&), Options& options) {
        define(app, options);
        commands[app.get_subcommands(nullptr).back()->get_name()] = [&options] { return options; };
    }

    // A mistyped command counts as none, and is left over.
    std::string errorText(const CLI::ParseError& error) const {
        const std::vector<std::string> left = app.remaining();
        if (!app.get_subcommands().empty() || left.empty()) {
            return error.what();
        }
        std::string text = "there is no command '" + left.front() + "'; the commands are";
        for (const CLI::App* command : app.get_subcommands(nullptr)) {
            text += " " + command->get_name();
        }
        return text;
    }

    CLI::App app;
    std::map<std::string, std::function<Command()>> commands;
    InfoOptions info;
    ListOptions list;
    ExtractOptions extract;
    ShowOptions show;
    MergeOptions merge;
    VerifyOptions verify;
};

} // namespace

Command parseCommandLine(int argc, const char* const* argv) {
    return Program().parse(argc, argv);
}

} // namespace olmkit
