#include <memory>
#include <string>

#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/manual/BashCompletion.h"
#include "cli/manual/FishCompletion.h"
#include "cli/manual/Outline.h"
#include "cli/manual/ZshCompletion.h"

namespace olmkit {

namespace {

// Prints the script by which a shell completes the program's arguments.
class CompletionCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        described = &program;
        CLI::App* completion = program.add_subcommand(
            "completion", "Print the script that completes olmkit's arguments in a shell");
        addChoice(*completion, "SHELL", makeScript,
                  {{"bash", bashCompletion}, {"zsh", zshCompletion}, {"fish", fishCompletion}},
                  "The shell that runs the script")
            ->type_name("")
            ->required();
        completion->footer("Examples:\n"
                           "  source <(olmkit completion bash)\n"
                           "  olmkit completion zsh > ~/.zfunc/_olmkit\n"
                           "  olmkit completion fish > ~/.config/fish/completions/olmkit.fish\n"
                           "\n"
                           "An installed olmkit already has them in place.\n");
        return completion;
    }

    ExitCode run(Output& output, Messages& messages) override {
        output.buffer() += makeScript(outlineOf(*described));
        return output.finish(ExitCode::Done, messages);
    }

private:
    using ScriptMaker = std::string (*)(const ProgramOutline&);

    const CLI::App* described = nullptr;
    ScriptMaker makeScript = nullptr;
};

} // namespace

std::unique_ptr<Command> makeCompletion() {
    return std::make_unique<CompletionCommand>();
}

} // namespace olmkit
