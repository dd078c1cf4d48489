#include <map>

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* completionExamples =
    "Examples:\n"
    "  source <(olmkit completion bash)\n"
    "  olmkit completion zsh > ~/.zfunc/_olmkit\n"
    "  olmkit completion fish > ~/.config/fish/completions/olmkit.fish\n"
    "\n"
    "An installed olmkit has put them in place already.\n";

} // namespace

void defineCompletion(CLI::App& app, CompletionOptions& options) {
    static const std::map<std::string, Shell> shells = {
        {"bash", Shell::Bash}, {"zsh", Shell::Zsh}, {"fish", Shell::Fish}};
    CLI::App* completion =
        app.add_subcommand("completion", "Print the script that completes olmkit's arguments");
    completion
        ->add_option_function<std::string>(
            "SHELL", [&options](const std::string& name) { options.shell = shells.at(name); },
            "The shell that is to run it")
        ->type_name("")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->required();
    completion->footer(completionExamples);
}

} // namespace olmkit
