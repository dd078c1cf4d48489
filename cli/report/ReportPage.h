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

// One HTML page about an archive, which needs nothing but a browser. The items go to the file as
// they come; what is told of all of them is behind them in the file. Without JavaScript everything
// but the items is there to read.
class ReportPage {
public:
    // `file` is borrowed, and open. `name` is what the page calls the archive.
    ReportPage(PageFile& file, std::string name) : file(file), name(std::move(name)) {}

    // In this order, add() for each item. What the file makes of it, the file tells; add() is false
    // when it has failed.
    void begin();
    bool add(const olmhost::Row& row, std::optional<olmhost::ItemKind> kind);
    void finish(const ArchiveSurvey& report);

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
    const ArchiveSurvey* report = nullptr;
    std::unordered_map<const Folder*, std::size_t> places; // of folders among those that are shown
    std::vector<TimeBar> bars;
    std::vector<Correspondent> people;
};

} // namespace olmkit

#endif
