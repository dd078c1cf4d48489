#include <memory>

#include "cli/command/Command.h"
#include "cli/manual/ManualPage.h"
#include "cli/manual/Outline.h"
#include "cli/terminal/ProgramVersion.h"

namespace olmkit {

namespace {

class ManualCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        described = &program;
        CLI::App* manual =
            program.add_subcommand("man", "Print the manual page, for man and groff");
        manual->footer("Examples:\n"
                       "  olmkit man | man -l -\n"
                       "  olmkit man > olmkit.1\n");
        return manual;
    }

    ExitCode run(Output& output, Messages& messages) override {
        output.buffer() += manualPage(outlineOf(*described), programVersion);
        return output.finish(ExitCode::Done, messages);
    }

private:
    const CLI::App* described = nullptr;
};

} // namespace

std::unique_ptr<Command> makeManual() {
    return std::make_unique<ManualCommand>();
}

} // namespace olmkit
