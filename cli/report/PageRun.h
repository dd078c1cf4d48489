#ifndef OLMKIT_CLI_REPORT_PAGERUN_H
#define OLMKIT_CLI_REPORT_PAGERUN_H

#include <cstdint>

#include "cli/info/ArchiveSurvey.h"
#include "cli/info/Surveyor.h"
#include "cli/report/PageFile.h"
#include "cli/report/ReportOptions.h"
#include "cli/report/ReportPage.h"
#include "cli/rows/ItemFilter.h"
#include "cli/rows/ListedShare.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Progress.h"
#include "host/session/Session.h"

namespace olmkit {

// Lists an archive and writes the page about it to a file.
class PageRun {
public:
    // All borrowed; they must outlive this object. `session` is open and not yet listed, `file` is
    // open.
    PageRun(const ReportOptions& options, olmhost::Session& session, PageFile& file,
            Messages& messages);

    // Writes the page, and returns what the archive contains. The page is not complete when the
    // file has failed or the archive is not an OLM archive. Call it once.
    ArchiveSurvey write();

    // The number of items in the page.
    std::uint64_t rowCount() const { return page.rowCount(); }

private:
    RowUse take(const olmhost::Row& row);

    olmhost::Session& session;
    PageFile& file;
    ItemFilter filter;
    bool isFiltered;
    ReportPage page;
    Progress progress;
    ListedShare listed;
};

} // namespace olmkit

#endif
