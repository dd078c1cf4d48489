#ifndef OLMKIT_CLI_EXTRACT_RUNOUTPUT_H
#define OLMKIT_CLI_EXTRACT_RUNOUTPUT_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/extract/ExtractOptions.h"
#include "cli/extract/Manifest.h"
#include "cli/extract/RunRecord.h"
#include "cli/files/OutputDirectory.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "host/session/Session.h"

namespace olmkit {

// Where a run writes: the folder, the manifest, and the record by which another run can go on.
class RunOutput {
public:
    // Borrowed.
    RunOutput(const ExtractOptions& options, const olmhost::Session& session, Messages& messages)
        : options(options), session(session), messages(messages), lines(folder) {}

    // Done, or what the run ends with; then people have been told why.
    ExitCode open();
    bool isOpen() const { return opened; }

    OutputDirectory& directory() { return folder; }
    Manifest& manifest() { return lines; }

    // Ends the run: it has dealt with all items, or with those below `end` alone. 0 or an errno
    // value.
    int finish();
    int breakOff(std::uint64_t end) { return lines.breakOff(end); }

private:
    ExitCode refuse(ExitCode code, const std::string& text);
    ExitCode checkShard(const std::optional<RunRecord>& unfinished);
    ExitCode begin(const RunRecord& record, const std::optional<RunRecord>& unfinished);
    std::optional<RunRecord> recordIn(const char* name) const;

    const ExtractOptions& options;
    const olmhost::Session& session;
    Messages& messages;
    OutputDirectory folder;
    Manifest lines;
    bool opened = false;
};

} // namespace olmkit

#endif
