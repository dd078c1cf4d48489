#ifndef OLMKIT_CLI_INFO_SURVEYOR_H
#define OLMKIT_CLI_INFO_SURVEYOR_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "cli/info/ArchiveSurvey.h"
#include "host/session/Session.h"

namespace olmkit {

// What a survey does with a row.
enum class RowUse {
    Counted,
    LeftOut, // not counted as listed, by folder or by date; the documents' own counts include it
    Stop,    // stop listing; the survey is no longer needed
};
using RowVisitor = std::function<RowUse(const olmhost::Row&)>;

// Makes the survey of an archive. Keeps no item: memory grows with the folders and the faults.
class Surveyor {
public:
    // `session` is borrowed; it must be open and not yet listed. `visit` is called with each row;
    // without it every row is counted.
    explicit Surveyor(olmhost::Session& session, RowVisitor visit = nullptr)
        : session(session), visit(std::move(visit)) {}

    // Lists the archive; with `isChecking`, also reads the data of every entry. Call it once.
    ArchiveSurvey survey(bool isChecking);

private:
    bool listItems();
    void addRow(const olmhost::Row& row);
    void endFolder();
    void addAttachment(const olmhost::NamedAttachment& attachment);
    void addEntry(std::uint64_t entry, bool isChecking);
    void addAccounts();
    void addNotes();
    EntryFinding entryOf(std::uint64_t entry, const std::string& text) const;

    olmhost::Session& session;
    RowVisitor visit;
    ArchiveSurvey found;
    std::u16string currentFolder; // of the last rows, levels ended by 0 units
    std::uint64_t itemsInFolder = 0;
};

} // namespace olmkit

#endif
