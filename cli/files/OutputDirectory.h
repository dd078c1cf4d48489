#ifndef OLMKIT_CLI_FILES_OUTPUTDIRECTORY_H
#define OLMKIT_CLI_FILES_OUTPUTDIRECTORY_H

#include <sys/stat.h>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "cli/extract/MessagePaths.h"
#include "cli/files/TemporaryFile.h"

namespace olmkit {

// The folder that an extraction writes to.
//
// Below it no symbolic link is followed, so nothing that lies there already can lead out of it.
// Unless it says otherwise, a function gives 0 or an errno value. Temporary files may be made, and
// files opened for reading, on any thread.
class OutputDirectory {
public:
    OutputDirectory() = default;
    OutputDirectory(const OutputDirectory&) = delete;
    OutputDirectory& operator=(const OutputDirectory&) = delete;
    ~OutputDirectory();

    // Opens the folder; makes it, and what is missing above it, when it is not there. EWOULDBLOCK:
    // another process writes to it.
    int open(const std::string& path);

    // Opens the folder when it is there, to read from it, or to put single files in it.
    int openForReading(const std::string& path);

    // Makes an empty file for reading and writing.
    int createTemporary(std::optional<TemporaryFile>& file);

    // Gives the temporary file its final place, in one step; what stands there is replaced.
    int place(TemporaryFile& file, const MessagePath& path);

    // Removes the temporary files that ended processes have left behind.
    int removeLeftovers();

    // Opens the file at `path`, its levels parted by "/", for reading, as openBelow() does.
    int openFile(const std::string& path, int& file) const;

    // For files that stand in the folder itself: makes an empty one that is written at its end, in
    // the place of what stands there; opens one that is; renames one; removes one, which need not
    // be there.
    int createFile(const std::string& name, int& file);
    int openToAppend(const std::string& name, int& file);
    int rename(const std::string& from, const std::string& to);
    int remove(const std::string& name);
    // Whether there is such a file; no link counts.
    bool has(const std::string& name) const;

    // Puts a file of that content in the folder, in one step.
    int putFile(const std::string& name, const std::string& content);
    // Its content; none when there is no such file, or it can't be read.
    std::optional<std::string> readFile(const std::string& name) const;

    // Makes `path` a hard link to `source`, a file of `from`, or where that can't be a copy of it,
    // its time included. What stands there is replaced.
    int linkFrom(const OutputDirectory& from, const std::string& source, const MessagePath& path);

    // Whether both are the same folder.
    bool isSameAs(const OutputDirectory& other) const;

private:
    std::string nextTemporaryName();
    int linkTemporary(int original, std::optional<TemporaryFile>& file);
    int openFolders(const std::vector<std::string>& folders);
    void closeFolder();

    int root = -1;
    std::atomic<unsigned> temporaries = 0;
    std::vector<std::string> openedFolders; // the path of `folder`
    int folder = -1; // the one used last, since the next message mostly goes there too
};

// What went wrong, in words that fit an output folder. `errorNumber` is an errno value.
std::string outputErrorText(int errorNumber);

// Whether every other file would meet the same error: a full or vanished disk.
bool stopsEverything(int errorNumber);

} // namespace olmkit

#endif
