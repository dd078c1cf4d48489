#ifndef OLMKIT_CLI_FILES_TEMPORARYFILE_H
#define OLMKIT_CLI_FILES_TEMPORARYFILE_H

#include <ctime>
#include <optional>
#include <string>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

// A file under a temporary name. Unless OutputDirectory::place() moves it to its final name, it is
// removed with this object, or when the process is interrupted. Made by
// OutputDirectory::createTemporary().
class TemporaryFile {
public:
    // `name` is the file's name in the folder `directory`, a borrowed descriptor. `file` is open
    // for reading and writing; this object closes it.
    TemporaryFile(int directory, std::string name, int file, Interrupt::Guard guard);
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    int descriptor() const { return file; }
    const std::string& name() const { return fileName; }

    // Sets the time of the last change, if there is one to set. Some file systems can't store every
    // time, which is not an error.
    void setTime(const std::optional<timespec>& time);

    // Closes the descriptor. Returns 0 or an errno value: some file systems report a failed write
    // only now.
    int close();

    // Opens a closed file again, for reading. Returns 0 or an errno value.
    int reopen();

    // Leaves the file in place, as it now has another name.
    void keep() { fileName.clear(); }

private:
    int directory;
    std::string fileName; // empty: there is nothing to remove
    int file;
    Interrupt::Guard guard;
};

} // namespace olmkit

#endif
