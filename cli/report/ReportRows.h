#ifndef OLMKIT_CLI_REPORT_REPORTROWS_H
#define OLMKIT_CLI_REPORT_REPORTROWS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/report/Correspondents.h"
#include "cli/report/TimeLine.h"
#include "host/session/Census.h"
#include "host/session/Row.h"

namespace olmkit {

// Writes the items of a page, and keeps what the page tells of all of them together. Each item is a
// JSON array: its index in the list, the kind's number, the folder's number, the date (seconds
// since 1970, or its text when it is none that can be read), sender or organizer, label, to, cc.
// They come in script elements of some thousand items, which a browser need not read at once.
class ReportRows {
public:
    void write(std::string& out, const olmhost::Row& row, std::optional<olmhost::ItemKind> kind);
    // Ends the last script element. Call it once, behind the last row.
    void end(std::string& out);

    std::uint64_t count() const { return written; }

    // By their numbers; as people see them, see folderOf().
    const std::vector<std::string>& folders() const { return folderPaths; }
    const TimeLine& timeLine() const { return times; }
    const Correspondents& correspondents() const { return people; }

    // The names of kinds by their numbers: those of olmhost::ItemKind, and one more for the rest.
    static std::vector<std::string> kindTitles();

private:
    std::size_t numberOfFolder(const olmhost::Row& row);

    std::uint64_t written = 0;
    std::vector<std::string> folderPaths;
    std::unordered_map<std::u16string, std::size_t> folderNumbers;
    std::u16string folderAtHand; // the last row's, as rows have it
    std::size_t numberAtHand = 0;
    TimeLine times;
    Correspondents people;
};

} // namespace olmkit

#endif
