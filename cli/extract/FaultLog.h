#ifndef OLMKIT_CLI_EXTRACT_FAULTLOG_H
#define OLMKIT_CLI_EXTRACT_FAULTLOG_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "host/session/Session.h"

namespace olmkit {

// The faults of the archive's entries that the sessions of one run found, each once.
class FaultLog {
public:
    // `session` is the one that lists the archive. It is borrowed.
    explicit FaultLog(const olmhost::Session& session) : session(session) {}

    // Takes notice of what the listing has found so far.
    void update();

    // Whether the listing had found a fault of the entry by the last update().
    bool isFaulty(std::uint64_t entry) const { return faultyEntries.contains(entry); }

    // Adds what the extraction of an item found. The faults of `reported` are among the warnings of
    // that item.
    void add(const std::vector<olmhost::EntryFault>& faults,
             const std::set<std::uint64_t>& reported);

    // Returns whether reading the archive has failed.
    bool hasReadFailed() const { return isReadFailed; }

    // Returns all faults, in the order of their entries.
    std::vector<olmhost::EntryFault> faults() const;

    // Returns the entries whose faults the user has seen as warnings of items.
    const std::set<std::uint64_t>& reportedEntries() const { return reportedByItems; }

private:
    // The entry; the kind of fault; the text of a fault that concerns no entry.
    using Key = std::tuple<std::uint64_t, olmhost::FaultKind, std::string>;
    static Key keyOf(const olmhost::EntryFault& fault);

    const olmhost::Session& session;
    bool isReadFailed = false;
    std::size_t updatedCount = 0; // faults of the session that update() has seen
    std::set<std::uint64_t> faultyEntries;
    std::set<std::uint64_t> reportedByItems;
    std::map<Key, std::string> itemFaults; // texts
};

} // namespace olmkit

#endif
