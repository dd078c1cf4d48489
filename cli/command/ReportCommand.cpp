#include <sys/stat.h>

#include <memory>

#include "cli/command/ArchiveInput.h"
#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/command/FilterArguments.h"
#include "cli/files/OutputDirectory.h"
#include "cli/info/NumberText.h"
#include "cli/report/PageFile.h"
#include "cli/report/PageRun.h"
#include "cli/report/ReportOptions.h"

namespace olmkit {

namespace {

std::string checkPage(const std::string& text) {
    if (text == "-") {
        return "the page can't be written to standard output; use the name of a file";
    }
    return text.empty() || text.ends_with('/') ? "'" + text + "' is not the name of a file" : "";
}

bool areSameFile(const std::string& one, const std::string& other) {
    struct stat first = {};
    struct stat second = {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

ExitCode reportPageFailure(const std::string& file, int error, Messages& messages) {
    messages.error(file + " can't be written: " + outputErrorText(error));
    return ExitCode::OutputFailed;
}

// Writes a page about an archive to a file and prints a summary. Damage is part of the page, and
// makes the exit code Partial.
class ReportCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* report = program.add_subcommand(
            "report",
            "Write one HTML page to browse an archive: folders, items, search, time line");
        addArchive(*report, options.archive);
        report
            ->add_option("-o,--output", options.file,
                         "The page to write; an existing file is replaced")
            ->type_name("FILE")
            ->required()
            ->check(checkPage);
        addFilter(*report, options.filter);
        report->footer("Examples:\n"
                       "  olmkit report mail.olm -o mail.html\n"
                       "  olmkit report mail.olm -o inbox.html --folder '**/Inbox' --since 2019\n"
                       "\n"
                       "The page needs only a browser: no network, no other file. It appears under "
                       "its name only\nwhen it is complete. The exit code is 1 when something is "
                       "damaged, encrypted or missing;\nthe page says what.\n");
        return report;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    ExitCode writePage(olmhost::Session& session, PageFile& file, Output& output,
                       Messages& messages) const;

    ReportOptions options;
};

ExitCode ReportCommand::run(Output& output, Messages& messages) {
    ArchiveInput archive(options.archive);
    if (const ExitCode code = archive.open(messages); code != ExitCode::Done) {
        return code;
    }
    if (areSameFile(archive.path(), options.file)) {
        messages.error(options.file + " is the archive itself; give the page another name");
        return ExitCode::Usage;
    }
    PageFile file;
    if (const int error = file.open(options.file); error != 0) {
        return reportPageFailure(options.file, error, messages);
    }
    return writePage(archive.session(), file, output, messages);
}

ExitCode ReportCommand::writePage(olmhost::Session& session, PageFile& file, Output& output,
                                  Messages& messages) const {
    PageRun run(options, session, file, messages);
    const ArchiveSurvey survey = run.write();
    const std::size_t faultCount = messages.faults(options.archive, session);
    if (exitCodeOf(session.faults()) == ExitCode::Unreadable) {
        return ExitCode::Unreadable;
    }
    if (!file.failed() && !session.isOlmArchive()) {
        return messages.notOlmArchive(options.archive, session);
    }
    if (const int error = file.finish(); error != 0) {
        return reportPageFailure(options.file, error, messages);
    }
    if (survey.isDamaged() && faultCount == 0) {
        messages.error(archiveTitle(options.archive) + ": not all of it could be read; " +
                       options.file + " says what is missing");
    }
    if (!messages.isQuiet()) {
        output.buffer() +=
            counted(run.rowCount(), "item", "items") + " shown in " + options.file + "\n";
    }
    return output.finish(survey.isDamaged() ? ExitCode::Partial : ExitCode::Done, messages);
}

} // namespace

std::unique_ptr<Command> makeReport() {
    return std::make_unique<ReportCommand>();
}

} // namespace olmkit
