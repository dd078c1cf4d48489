#include <memory>

#include "cli/command/ArchiveInput.h"
#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/info/InfoOptions.h"
#include "cli/info/SurveyText.h"
#include "cli/info/Surveyor.h"

namespace olmkit {

namespace {

// Prints what is in an archive. Damage is part of that, and makes the exit code Partial.
class InfoCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* info = program.add_subcommand(
            "info", "Summarize an archive: kinds, folders, dates, sizes, damage");
        addArchive(*info, options.archive);
        info->add_flag("--json", options.isJson, "Print one JSON object, for programs");
        info->add_flag("--check", options.isChecking,
                       "Read every entry to its end, to find damage");
        info->footer("Examples:\n"
                     "  olmkit info mail.olm\n"
                     "  olmkit info mail.olm --check\n"
                     "  olmkit info mail.olm --json | jq '.kinds[] | {kind, items}'\n"
                     "\n"
                     "Dates are in UTC. The exit code is 1 when something is damaged, "
                     "encrypted or\nmissing.\n");
        return info;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    InfoOptions options;
};

ExitCode InfoCommand::run(Output& output, Messages& messages) {
    ArchiveInput archive(options.archive);
    if (const ExitCode code = archive.open(messages); code != ExitCode::Done) {
        return code;
    }
    olmhost::Session& session = archive.session();
    ArchiveSurvey survey = Surveyor(session).survey(options.isChecking);
    if (exitCodeOf(session.faults()) == ExitCode::Unreadable) {
        messages.faults(options.archive, session);
        return ExitCode::Unreadable;
    }
    if (!session.isOlmArchive()) {
        messages.faults(options.archive, session);
        return messages.notOlmArchive(options.archive, session);
    }
    survey.archive = options.archive;
    if (options.isJson) {
        appendShown(output.buffer(), survey.json(), 2);
    } else {
        appendSurvey(output.buffer(), survey);
    }
    return output.finish(survey.isDamaged() ? ExitCode::Partial : ExitCode::Done, messages);
}

} // namespace

std::unique_ptr<Command> makeInfo() {
    return std::make_unique<InfoCommand>();
}

} // namespace olmkit
