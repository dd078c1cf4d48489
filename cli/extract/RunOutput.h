#ifndef OLMKIT_CLI_EXTRACT_RUNOUTPUT_H
#define OLMKIT_CLI_EXTRACT_RUNOUTPUT_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/extract/ExtractOptions.h"
#include "cli/files/OutputDirectory.h"
#include "cli/manifest/Manifest.h"
#include "cli/manifest/RunRecord.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "host/session/Session.h"

namespace olmkit {

// The output of a run: the folder, the manifest, and the record that lets another run resume it.
class RunOutput {
public:
    // All are borrowed.
    RunOutput(const ExtractOptions& options, const olmhost::Session& session, Messages& messages)
        : options(options), session(session), messages(messages), lines(folder) {}

    // Opens the folder and begins the manifest. Returns Done, or the exit code of the run after a
    // message.
    ExitCode open();
    bool isOpen() const { return opened; }

    OutputDirectory& directory() { return folder; }
    Manifest& manifest() { return lines; }

    // Ends the output of a run that processed all items, or only those before the index `end`.
    // Returns 0 or an errno value.
    int finish();
    int breakOff(std::uint64_t end) { return lines.breakOff(end); }

private:
    ExitCode refuse(ExitCode code, const std::string& text);
    ExitCode checkShard(const std::optional<RunRecord>& unfinished);
    ExitCode begin(const std::optional<RunRecord>& unfinished);
    std::optional<RunRecord> recordIn(const char* name) const;

    const ExtractOptions& options;
    const olmhost::Session& session;
    Messages& messages;
    OutputDirectory folder;
    Manifest lines;
    std::optional<RunRecord> record; // of this run, from open()
    bool opened = false;
};

} // namespace olmkit

#endif
