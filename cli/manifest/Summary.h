#ifndef OLMKIT_CLI_MANIFEST_SUMMARY_H
#define OLMKIT_CLI_MANIFEST_SUMMARY_H

#include <cstdint>
#include <string>
#include <string_view>

#include "cli/manifest/SummaryNumbers.h"
#include "host/session/Session.h"

namespace olmkit {

// How one requested item ended.
struct ItemAccount {
    std::string_view kind; // from its row; anything else for an item without a row
    bool isWritten = false;
    std::uint64_t attachmentsWritten = 0; // whole, in a message that was written
    std::uint64_t attachmentsLost = 0;    // missing or incomplete
};

// Reconciles an extraction: every item in the archive's documents was listed, and every listed item
// was written or has failed.
//
// Order of calls: list(), request() and finish() in any order, then close(). To join the parts of
// one extraction: the constructor, join() for each other part, then closeJoined().
class Summary {
public:
    Summary() = default;

    // Starts with the summary of one shard.
    explicit Summary(SummaryNumbers shard) : totals(std::move(shard)) {}

    // Counts a row that was listed.
    void list(std::string_view kind) { ++totals.of(kind).listed; }
    // Counts an item that is to be written. `kind` as in ItemAccount.
    void request(std::string_view kind) { ++totals.of(kind).requested; }
    // Counts an item that was written or has failed.
    void finish(const ItemAccount& account);

    // Compares the listed items with the session's own count of the items in the documents, so the
    // session must not be paused inside an entry.
    void close(const olmhost::Session& session, RunExtent extent);

    // Adds the summary of another shard.
    void join(const SummaryNumbers& shard);
    // Compares the numbers of all shards together.
    void closeJoined();

    // What was counted; complete after close() or closeJoined().
    const SummaryNumbers& numbers() const { return totals; }

private:
    void takeCensus(const olmhost::Census& census);
    void noteEntries(const olmhost::Session& session);
    void compare();
    void compareEntries();
    void compareItems();
    void compareAttachments();

    SummaryNumbers totals;
};

} // namespace olmkit

#endif
