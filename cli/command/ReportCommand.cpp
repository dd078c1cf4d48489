#include "cli/command/ReportCommand.h"

#include <sys/stat.h>

#include "cli/command/ArchiveInput.h"
#include "cli/files/OutputDirectory.h"
#include "cli/info/NumberText.h"
#include "cli/info/Surveyor.h"
#include "cli/report/PageFile.h"
#include "cli/report/ReportPage.h"
#include "cli/rows/ItemFilter.h"
#include "cli/rows/ListedShare.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Progress.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

bool areSameFile(const std::string& one, const std::string& other) {
    struct stat first = {};
    struct stat second = {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// The page of one archive on its way into its file.
class PageRun {
public:
    PageRun(const ReportOptions& options, olmhost::Session& session, PageFile& file,
            Messages& messages)
        : session(session), file(file), filter(options.filter),
          isFiltered(!filter.takesEverything()), page(file, archiveName(options.archive)),
          progress(messages, archiveName(options.archive)), listed(session) {}

    // Writes the page, unless the file fails.
    ArchiveSurvey write() {
        page.begin();
        ArchiveSurvey report =
            Surveyor(session, [this](const olmhost::Row& row) { return take(row); }).survey(false);
        progress.finish();
        if (!file.failed() && session.isOlmArchive()) {
            page.finish(report);
        }
        return report;
    }

    std::uint64_t rowCount() const { return page.rowCount(); }

private:
    RowUse take(const olmhost::Row& row) {
        listed.reach(row.entry);
        progress.update(row.index + 1, 0, file.size(), 0, listed.value());
        if (isFiltered && !filter.takes(row)) {
            return RowUse::LeftOut;
        }
        return page.add(row, session.documentKind()) ? RowUse::Counted : RowUse::Stop;
    }

    olmhost::Session& session;
    PageFile& file;
    ItemFilter filter;
    bool isFiltered;
    ReportPage page;
    Progress progress;
    ListedShare listed;
};

ExitCode pageFailed(const std::string& file, int error, Messages& messages) {
    messages.error(file + " can't be written: " + outputErrorText(error));
    return ExitCode::OutputFailed;
}

} // namespace

ExitCode runReport(const ReportOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    ArchiveInput input(options.archive);
    olmhost::Session session;
    if (const ExitCode code = input.open(session, messages); code != ExitCode::Done) {
        return code;
    }
    if (areSameFile(input.path(), options.file)) {
        messages.error(options.file + " is the archive itself; give the page another name");
        return ExitCode::Usage;
    }
    PageFile file;
    if (const int error = file.open(options.file); error != 0) {
        return pageFailed(options.file, error, messages);
    }

    PageRun run(options, session, file, messages);
    const ArchiveSurvey report = run.write();
    const std::size_t faultCount = messages.faults(options.archive, session);
    if (!file.failed() && !session.isOlmArchive()) {
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    if (const int error = file.finish(); error != 0) {
        return pageFailed(options.file, error, messages);
    }
    if (report.isDamaged() && faultCount == 0) {
        messages.error(archiveTitle(options.archive) + ": not all of it is whole; " + options.file +
                       " tells what is missing");
    }
    if (!messages.isQuiet()) {
        output.buffer() +=
            counted(run.rowCount(), "item", "items") + " shown in " + options.file + "\n";
    }
    if (!output.flush() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return report.isDamaged() ? ExitCode::Partial : ExitCode::Done;
}

} // namespace olmkit
