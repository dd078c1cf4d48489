#ifndef OLMKIT_CLI_EXTRACT_SUMMARY_H
#define OLMKIT_CLI_EXTRACT_SUMMARY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/files/OutputDirectory.h"
#include "cli/rows/JsonLine.h"
#include "host/session/Session.h"

namespace olmkit {

// What became of one requested item.
struct ItemAccount {
    std::string_view kind; // as its row tells it; anything else when there was no row
    bool isWritten = false;
    std::uint64_t attachmentsWritten = 0; // whole, of a message that was written
    std::uint64_t attachmentsLost = 0;    // in part or altogether
};

// The books of one extraction: everything that stands in the archive's documents was listed,
// and everything that was listed was written or has failed.
//
// Order of calls: list(), request() and finish() in any order, close() at the end, then the rest.
class Summary {
public:
    static constexpr const char* fileName = "summary.json";

    // A row was listed.
    void list(std::string_view kind) { ++of(kind).listed; }
    // An item is to be written. `kind` as in ItemAccount.
    void request(std::string_view kind) { ++of(kind).requested; }
    // An item was written, or can't be.
    void finish(const ItemAccount& account);

    // Draws the balance. What was listed is compared with the session's own count of the items in
    // the documents, so the session must not have been paused inside an entry.
    void close(const olmhost::Session& session, RunExtent runExtent);

    // Takes in another part of the same extraction, of which all parts together make the whole;
    // then draws the balance of all.
    void join(const Summary& part);
    void closeJoined();

    // What does not add up, and what was lost that no item's own messages tell, for people.
    const std::vector<std::string>& findings() const { return found; }

    // For people: a line a kind and one of attachments. Empty unless the run was Whole.
    std::string table() const;

    // One that was written, to be joined with others; none when the text is no summary.
    static std::optional<Summary> read(const std::string& text);

    // Writes the file "summary.json": it appears under its name when it is whole. 0 or an errno
    // value.
    int write(OutputDirectory& directory) const;

private:
    struct Counts {
        std::uint64_t documents = 0;
        std::uint64_t items = 0; // in them
        std::uint64_t listed = 0;
        std::uint64_t requested = 0;
        std::uint64_t written = 0;
        std::uint64_t failed = 0;
    };

    // Five kinds as rows have them, and items of which no row has told the kind.
    static constexpr std::size_t kindCount = 6;

    struct Attachments {
        std::uint64_t ofMails = 0;  // that name an entry
        std::uint64_t unnamed = 0;  // of mails too, that name none
        std::uint64_t homeless = 0; // of other items: their messages take none
        std::uint64_t written = 0;
        std::uint64_t lost = 0;

        std::uint64_t named() const { return ofMails + unnamed + homeless; }
    };

    Counts& of(std::string_view kind);
    void takeCensus(const olmhost::Census& census);
    void balance();
    void compareItems();
    void compareAttachments();
    void note(const olmhost::Session& session);
    JsonObject json() const;

    RunExtent extent = RunExtent::Selection;
    std::array<Counts, kindCount> kinds;
    Attachments attachments;
    bool isBalanced = true;
    std::vector<std::string> found;
    JsonObject notes = JsonObject::array();
};

} // namespace olmkit

#endif
