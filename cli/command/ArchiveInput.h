#ifndef OLMKIT_CLI_COMMAND_ARCHIVEINPUT_H
#define OLMKIT_CLI_COMMAND_ARCHIVEINPUT_H

#include <string>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "host/session/Session.h"

namespace olmkit {

// The archive that a command reads: a file, or what comes through a pipe.
//
// An archive is read from its end, and at random. What can't be read that way ("-" for standard
// input, a named pipe) is copied to a file without a name, in the environment's TMPDIR or in /tmp;
// the file disappears with the process, however that ends.
class ArchiveInput {
public:
    // `archive` is the path as the user gave it.
    explicit ArchiveInput(std::string archive);
    ArchiveInput(const ArchiveInput&) = delete;
    ArchiveInput& operator=(const ArchiveInput&) = delete;
    ~ArchiveInput();

    // Opens the archive. On failure prints a message and returns the run's exit code. Call it once.
    ExitCode open(Messages& messages);

    // The open archive.
    olmhost::Session& session() { return openSession; }

    // A path by which the open archive can be read while this object exists.
    const std::string& path() const { return readable; }

private:
    ExitCode prepare(Messages& messages);
    ExitCode takeStandardInput(Messages& messages);
    ExitCode takePipe(Messages& messages);
    ExitCode spool(int source, Messages& messages);
    ExitCode copy(int source, int target, Messages& messages);
    ExitCode readFailed(int errorNumber, Messages& messages) const;
    void readFrom(int descriptor);

    std::string archive;
    std::string readable; // empty until prepare() succeeds
    int file = -1;        // the copy
    olmhost::Session openSession;
};

} // namespace olmkit

#endif
