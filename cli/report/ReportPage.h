#ifndef OLMKIT_CLI_REPORT_REPORTPAGE_H
#define OLMKIT_CLI_REPORT_REPORTPAGE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cli/info/ArchiveSurvey.h"
#include "cli/report/PageFile.h"
#include "cli/report/ReportRows.h"
#include "host/session/Census.h"
#include "host/session/Row.h"

namespace olmkit {

// One HTML page about an archive, which needs only a browser. Items are written to the file as they
// come, the counts after them. Without JavaScript everything except the items can be read.
class ReportPage {
public:
    // `file` is borrowed and must be open. `name` is the name of the archive in the page.
    ReportPage(PageFile& file, std::string name) : file(file), name(std::move(name)) {}

    // Call begin(), then add() for each item, then finish(). Errors are reported by `file`; add()
    // returns false when it has failed.
    void begin();
    bool add(const olmhost::Row& row, std::optional<olmhost::ItemKind> kind);
    void finish(const ArchiveSurvey& found);

    // Returns the number of items added.
    std::uint64_t rowCount() const { return rows.count(); }

private:
    void writeUpTo(std::string_view mark);
    void write(std::string_view part);
    void writeFacts();
    void writeFindings();
    void writeKinds();
    void writeFolders();
    void writeFolder(const std::string& folderName, const Folder& folder);
    void writeTimes();
    void writePeople();
    void writeTables();

    PageFile& file;
    std::string name;
    ReportRows rows;
    std::string_view rest; // of the template
    const ArchiveSurvey* survey = nullptr;
    std::unordered_map<const Folder*, std::size_t> places; // positions of folders in the page
    std::vector<TimeBar> bars;
    std::vector<Correspondent> people;
};

} // namespace olmkit

#endif
