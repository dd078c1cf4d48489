#ifndef OLMKIT_CLI_COMMAND_ARCHIVEINPUT_H
#define OLMKIT_CLI_COMMAND_ARCHIVEINPUT_H

#include <string>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "host/session/Session.h"

namespace olmkit {

// The archive that a command was given: a file, or what comes through a pipe.
//
// An archive is read from its end, here and there. What can't be read so ("-" for standard input, a
// named pipe) is copied into a file without a name, in the folder TMPDIR of the environment or in
// /tmp; it goes with the process, however that ends.
class ArchiveInput {
public:
    // `archive` is the path as it was given.
    explicit ArchiveInput(std::string archive);
    ArchiveInput(const ArchiveInput&) = delete;
    ArchiveInput& operator=(const ArchiveInput&) = delete;
    ~ArchiveInput();

    // Makes the archive ready to be opened by path(). After anything but Done it has been told why.
    ExitCode prepare(Messages& messages);

    // prepare() if that has not been called, and opens the archive in `session`. After anything but
    // Done it has been told why.
    ExitCode open(olmhost::Session& session, Messages& messages,
                  const olmhost::SessionOptions& options = {});

    // For any number of sessions at once, while this object lives and behind prepare().
    const std::string& path() const { return readable; }

private:
    ExitCode takeStandardInput(Messages& messages);
    ExitCode takePipe(Messages& messages);
    ExitCode spool(int source, Messages& messages);
    ExitCode copy(int source, int target, Messages& messages);
    ExitCode readFailed(int errorNumber, Messages& messages) const;
    void readFrom(int descriptor);

    std::string archive;
    std::string readable; // empty ahead of prepare()
    int file = -1;        // the copy
};

} // namespace olmkit

#endif
