#ifndef OLMKIT_CLI_TERMINAL_MESSAGES_H
#define OLMKIT_CLI_TERMINAL_MESSAGES_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/TerminalOptions.h"
#include "host/session/OpenOutcome.h"
#include "host/session/Session.h"
#include "host/stream/EntryFault.h"

namespace olmkit {

// The program's messages: one line each on standard error, after "olmkit: ". Characters that could
// act on a terminal are replaced. `archive` is always the path as the user gave it. Used by one
// thread at a time.
class Messages {
public:
    void setOptions(const TerminalOptions& wanted);
    const TerminalOptions& options() const { return chosen; }
    bool isQuiet() const { return chosen.loudness == Loudness::Quiet; }
    bool isVerbose() const { return chosen.loudness == Loudness::Verbose; }

    // Prints what is wrong.
    void error(std::string_view text);
    // Prints what may need attention, unless the run is quiet.
    void warn(std::string_view text);
    // Prints what happens, when the run is verbose.
    void detail(std::string_view text);

    // Writes text unchanged to standard error, control sequences included.
    static void show(std::string_view text);

    // Sets a function that is called before each message, to clear an unfinished line on the
    // terminal. An empty function unsets it.
    void beforeEachMessage(std::function<void()> action) { beforeMessage = std::move(action); }

    // Reports an archive that did not open, and what to do about it.
    void openFailure(const std::string& archive, const olmhost::OpenOutcome& outcome);

    // Reports a readable archive without any document that this program reads. Returns the run's
    // exit code.
    ExitCode notOlmArchive(const std::string& archive, const olmhost::Session& session);

    // Reports the faults of all entries and returns their number.
    std::size_t faults(const std::string& archive, const olmhost::Session& session);

    // Reports the faults in `found`, each with the entry's name and what to do about it, except
    // those of entries in `reported`.
    void faults(const std::string& archive, const olmhost::Session& session,
                const std::vector<olmhost::EntryFault>& found,
                const std::set<std::uint64_t>& reported);

    // Reports that an output, called `name`, can't be written. Returns the run's exit code.
    ExitCode outputFailure(std::string_view name, int errorNumber);

private:
    void put(std::string_view text, std::string_view color);

    TerminalOptions chosen;
    bool isStyled = false;
    std::function<void()> beforeMessage;
};

// The path that means standard input where an archive is expected.
inline constexpr std::string_view standardInput = "-";

// Returns what messages call an archive that was given by this path.
std::string archiveTitle(const std::string& archive);

// Returns the same without the folders of the path.
std::string archiveName(const std::string& archive);

// Returns what messages call an entry: its index and name.
std::string entryTitle(const olmhost::Session& session, std::uint64_t entry);

// Returns the text of an errno value.
std::string errorText(int errorNumber);

} // namespace olmkit

#endif
