#ifndef OLMKIT_CLI_INFO_SURVEYOR_H
#define OLMKIT_CLI_INFO_SURVEYOR_H

#include <cstdint>
#include <string>

#include "cli/info/ArchiveReport.h"
#include "host/session/Session.h"

namespace olmkit {

// Finds out all that a report tells. Keeps no item: memory grows with the folders, and with what is
// wrong.
class Surveyor {
public:
    // `session` is borrowed; it is open and not yet listed.
    explicit Surveyor(olmhost::Session& session) : session(session) {}

    // Lists the archive; with `isChecking` it reads the data of every entry, too. Call it once.
    ArchiveReport survey(bool isChecking);

private:
    void listItems();
    void addRow(const olmhost::Row& row);
    void endFolder();
    void addAttachment(const olmhost::NamedAttachment& attachment);
    void addEntry(std::uint64_t entry, bool isChecking);
    void addAccounts();
    void addNotes();
    EntryReport reportOn(std::uint64_t entry, const std::string& text) const;

    olmhost::Session& session;
    ArchiveReport report;
    std::u16string folderAtHand; // of the rows that came last, as rows have it
    std::uint64_t itemsAtHand = 0;
};

} // namespace olmkit

#endif
