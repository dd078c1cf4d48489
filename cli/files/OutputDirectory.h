#ifndef OLMKIT_CLI_FILES_OUTPUTDIRECTORY_H
#define OLMKIT_CLI_FILES_OUTPUTDIRECTORY_H

#include <sys/stat.h>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "cli/files/OutputPath.h"
#include "cli/files/TemporaryFile.h"

namespace olmkit {

// The folder that an extraction writes to or wrote to.
//
// Below it no symbolic link is followed, so nothing is ever opened outside of it. Functions that
// return int return 0 or an errno value. createTemporary() and openFile() may be called on any
// thread.
class OutputDirectory {
public:
    OutputDirectory() = default;
    OutputDirectory(const OutputDirectory&) = delete;
    OutputDirectory& operator=(const OutputDirectory&) = delete;
    ~OutputDirectory();

    // Opens the folder and locks it for this process. Missing folders are made. EWOULDBLOCK:
    // another process writes to it.
    int open(const std::string& path);

    // Opens an existing folder without a lock, to read from it or to put single files in it.
    int openForReading(const std::string& path);

    // Creates an empty file under a temporary name, for reading and writing.
    int createTemporary(std::optional<TemporaryFile>& file);

    // Moves a temporary file to its final place, in one step. A file that is there is replaced.
    int place(TemporaryFile& file, const OutputPath& path);

    // Waits until everything that was written to the file system of the folder is on the disk. One
    // call for all files costs far less than one for each.
    int sync();
    // Waits until the names in the folder itself are on the disk.
    int syncNames();
    // Makes both do nothing.
    void skipSync() { isSynced = false; }

    // Removes the temporary files of processes that were killed.
    int removeLeftovers();

    // Opens the file at `path` for reading; see openBelow().
    int openFile(const std::string& path, int& file) const;

    // The following take the name of a file in the folder itself.

    // Creates an empty file for appending. A file that is there is replaced.
    int createFile(const std::string& name, int& file);
    // Opens a file for appending.
    int openToAppend(const std::string& name, int& file);
    int rename(const std::string& from, const std::string& to);
    // Removes a file; a missing one is not an error.
    int remove(const std::string& name);
    // Whether there is a regular file of that name. A link is not one.
    bool has(const std::string& name) const;
    // Writes a file, which appears under its name in one step.
    int putFile(const std::string& name, const std::string& contents);
    // Returns the contents of a file, or nothing when it is missing or can't be read.
    std::optional<std::string> readFile(const std::string& name) const;

    // Makes `path` a hard link to the file `source` below `from`, or a copy with the same times
    // where there can be no link. A file that is there is replaced.
    int linkFrom(const OutputDirectory& from, const std::string& source, const OutputPath& path);

    // Whether both are the same folder.
    bool isSameAs(const OutputDirectory& other) const;

private:
    std::string nextTemporaryName();
    int linkTemporary(int original, std::optional<TemporaryFile>& file);
    int openFolders(const std::vector<std::string>& folders);
    void closeFolder();

    int root = -1;
    bool isSynced = true;
    std::atomic<unsigned> temporaries = 0;
    std::vector<std::string> openedFolders; // the path of `folder`
    int folder = -1; // the last one used; the next message is often in the same folder
};

// Returns the text of an errno value that a function of OutputDirectory returned.
std::string outputErrorText(int errorNumber);

// Whether every other file would fail with the same error, as on a full disk.
bool stopsEverything(int errorNumber);

} // namespace olmkit

#endif
