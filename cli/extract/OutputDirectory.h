#ifndef OLMKIT_CLI_EXTRACT_OUTPUTDIRECTORY_H
#define OLMKIT_CLI_EXTRACT_OUTPUTDIRECTORY_H

#include <optional>
#include <string>
#include <vector>

#include "cli/extract/MessagePaths.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

// The folder that an extraction writes to.
//
// Below it no symbolic link is followed, so nothing that lies there already can lead out of it.
// Every function gives 0 or an errno value.
class OutputDirectory {
public:
    OutputDirectory() = default;
    OutputDirectory(const OutputDirectory&) = delete;
    OutputDirectory& operator=(const OutputDirectory&) = delete;
    ~OutputDirectory();

    // Opens the folder; makes it, and what is missing above it, when it is not there.
    int open(const std::string& path);

    // Makes an empty file for reading and writing that nobody else uses, and puts it under guard.
    // The caller closes it, and moves it in place or removes it. After a failure `name` is empty.
    int createTemporary(std::string& name, int& file, std::optional<Interrupt::Guard>& guard);

    // Gives the temporary file its final place, in one step; what stands there is replaced.
    int moveTo(const std::string& temporary, const MessagePath& path);

    void remove(const std::string& temporary);

private:
    int openFolders(const std::vector<std::string>& folders);
    void closeFolder();

    int root = -1;
    unsigned temporaries = 0;
    std::vector<std::string> openedFolders; // the path of `folder`
    int folder = -1; // the one used last, since the next message mostly goes there too
};

// What went wrong, in words that fit an output folder. `errorNumber` is an errno value.
std::string outputErrorText(int errorNumber);

// Whether every other file would meet the same error: a full or vanished disk.
bool stopsEverything(int errorNumber);

} // namespace olmkit

#endif
