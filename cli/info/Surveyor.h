#ifndef OLMKIT_CLI_INFO_SURVEYOR_H
#define OLMKIT_CLI_INFO_SURVEYOR_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "cli/info/ArchiveSurvey.h"
#include "host/session/Session.h"

namespace olmkit {

// What a report makes of a row.
enum class RowUse {
    Counted,
    LeftOut, // of the rows, folders and dates; what the documents hold is told nevertheless
    Stop,    // and list no more: nobody wants the report
};
using RowVisitor = std::function<RowUse(const olmhost::Row&)>;

// Finds out all that a report tells. Keeps no item: memory grows with the folders, and with what is
// wrong.
class Surveyor {
public:
    // `session` is borrowed; it is open and not yet listed.
    // `visit` is shown each row.
    explicit Surveyor(olmhost::Session& session, RowVisitor visit = nullptr)
        : session(session), visit(std::move(visit)) {}

    // Lists the archive; with `isChecking` it reads the data of every entry, too. Call it once.
    ArchiveSurvey survey(bool isChecking);

private:
    bool listItems();
    void addRow(const olmhost::Row& row);
    void endFolder();
    void addAttachment(const olmhost::NamedAttachment& attachment);
    void addEntry(std::uint64_t entry, bool isChecking);
    void addAccounts();
    void addNotes();
    EntryReport reportOn(std::uint64_t entry, const std::string& text) const;

    olmhost::Session& session;
    RowVisitor visit;
    ArchiveSurvey report;
    std::u16string folderAtHand; // of the rows that came last, as rows have it
    std::uint64_t itemsAtHand = 0;
};

} // namespace olmkit

#endif
