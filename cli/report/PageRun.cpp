#include "cli/report/PageRun.h"

namespace olmkit {

PageRun::PageRun(const ReportOptions& options, olmhost::Session& session, PageFile& file,
                 Messages& messages)
    : session(session), file(file), filter(options.filter), isFiltered(!filter.takesEverything()),
      page(file, archiveName(options.archive)), progress(messages, archiveName(options.archive)),
      listed(session) {}

ArchiveSurvey PageRun::write() {
    page.begin();
    ArchiveSurvey survey =
        Surveyor(session, [this](const olmhost::Row& row) { return take(row); }).survey(false);
    progress.finish();
    if (!file.failed() && session.isOlmArchive()) {
        page.finish(survey);
    }
    return survey;
}

RowUse PageRun::take(const olmhost::Row& row) {
    listed.reach(row.entry);
    progress.update(row.index + 1, 0, file.size(), 0, listed.value());
    if (isFiltered && !filter.takes(row)) {
        return RowUse::LeftOut;
    }
    return page.add(row, session.documentKind()) ? RowUse::Counted : RowUse::Stop;
}

} // namespace olmkit
