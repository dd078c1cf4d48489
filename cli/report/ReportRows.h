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

// Writes the items of a page and counts them by folder, month and correspondent. Each item is a
// JSON array: its index in the list, the number of its kind, the number of its folder, its date
// (seconds since 1970, or the text of one that can't be read), sender or organizer, label, to, cc.
// The arrays are split over script elements of some thousand items, which the script reads one at a
// time.
class ReportRows {
public:
    // Appends an item. `kind` is std::nullopt for one of an unknown kind.
    void write(std::string& out, const olmhost::Row& row, std::optional<olmhost::ItemKind> kind);

    // Ends the last script element. Call it once, after the last row.
    void end(std::string& out);

    // Returns the number of items written.
    std::uint64_t count() const { return written; }

    // Returns the paths of the folders by number, see folderOf().
    const std::vector<std::string>& folders() const { return folderPaths; }
    const TimeLine& timeLine() const { return times; }
    const Correspondents& correspondents() const { return people; }

    // Returns the names of kinds by number: those of olmhost::ItemKind, then "unknown".
    static std::vector<std::string> kindTitles();

private:
    std::size_t numberOfFolder(const olmhost::Row& row);

    std::uint64_t written = 0;
    std::vector<std::string> folderPaths;
    std::unordered_map<std::u16string, std::size_t> folderNumbers;
    std::u16string currentFolder; // of the last row, levels ended by 0 units
    std::size_t currentNumber = 0;
    TimeLine times;
    Correspondents people;
};

} // namespace olmkit

#endif
