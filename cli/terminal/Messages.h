#ifndef OLMKIT_CLI_TERMINAL_MESSAGES_H
#define OLMKIT_CLI_TERMINAL_MESSAGES_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/terminal/TerminalOptions.h"
#include "host/session/OpenOutcome.h"
#include "host/session/Session.h"
#include "host/stream/EntryFault.h"

namespace olmkit {

// What the program tells people, one line each on standard error, with "olmkit: " ahead. What
// could act on a terminal is taken out of the lines. `archive` is always the path as it was given.
// Used by one thread at a time.
class Messages {
public:
    void setOptions(const TerminalOptions& wanted);
    const TerminalOptions& options() const { return chosen; }
    bool isQuiet() const { return chosen.loudness == Loudness::Quiet; }
    bool isVerbose() const { return chosen.loudness == Loudness::Verbose; }

    // What is wrong, or has gone wrong.
    void error(std::string_view text);
    // What is worth a look. Not told when only errors are wanted.
    void warn(std::string_view text);
    // What happens. Told only when everything is wanted.
    void detail(std::string_view text);

    // Writes text as it is, control sequences and all, to standard error.
    static void show(std::string_view text);

    // Sets what takes away a line that stands unfinished on the terminal; it is called ahead of
    // each message. An empty function ends that.
    void beforeEachMessage(std::function<void()> action) { beforeMessage = std::move(action); }

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

private:
    void put(std::string_view text, std::string_view color);

    TerminalOptions chosen;
    bool isStyled = false;
    std::function<void()> beforeMessage;
};

// The name that stands for standard input where an archive is wanted.
inline constexpr std::string_view standardInput = "-";

// How messages call an archive that was given by that path.
std::string archiveTitle(const std::string& archive);

// The same without its folders.
std::string archiveName(const std::string& archive);

// How an entry is called in messages: its index and name.
std::string entryTitle(const olmhost::Session& session, std::uint64_t entry);

// The text of an errno value.
std::string errorText(int errorNumber);

} // namespace olmkit

#endif
