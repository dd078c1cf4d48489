#ifndef OLMKIT_CLI_TERMINAL_MESSAGES_H
#define OLMKIT_CLI_TERMINAL_MESSAGES_H

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/OpenOutcome.h"
#include "host/session/Session.h"
#include "host/stream/EntryFault.h"

namespace olmkit {

// What the program tells people, one line each on standard error, with "olmkit: " ahead. What
// could act on a terminal is taken out of the lines.
class Messages {
public:
    void tell(std::string_view text);

    // An archive that did not open, and what to do about it.
    void openFailure(const std::string& archive, const olmhost::OpenOutcome& outcome);

    // A readable archive that holds nothing of what this program reads.
    void noOlmArchive(const std::string& archive, const olmhost::Session& session);

    // The faults of all entries. Gives how many there are.
    std::size_t faults(const std::string& archive, const olmhost::Session& session);

    // Faults of the archive's entries, each with the entry's name and what to do about it, but for
    // those of entries in `told`.
    void faults(const std::string& archive, const olmhost::Session& session,
                const std::vector<olmhost::EntryFault>& found, const std::set<std::uint64_t>& told);

    // Standard output, or whatever `name` says, can't be written.
    void outputFailure(std::string_view name, int errorNumber);
};

// How an entry is called in messages: its index and name.
std::string entryTitle(const olmhost::Session& session, std::uint64_t entry);

// The text of an errno value.
std::string errorText(int errorNumber);

} // namespace olmkit

#endif
