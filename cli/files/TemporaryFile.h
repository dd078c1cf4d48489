#ifndef OLMKIT_CLI_FILES_TEMPORARYFILE_H
#define OLMKIT_CLI_FILES_TEMPORARYFILE_H

#include <string>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

// A file on its way to its name: nobody else uses it, and unless OutputDirectory::place() gives it
// its name it goes with this object, or with the process when that is interrupted. Made by
// OutputDirectory::createTemporary().
class TemporaryFile {
public:
    // The file `name` in `directory`, an open descriptor that outlives this object; `file` is open
    // for reading and writing, and this object's to close.
    TemporaryFile(int directory, std::string name, int file, Interrupt::Guard guard);
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    int descriptor() const { return file; }
    const std::string& name() const { return fileName; }

    // Closes the descriptor. 0 or an errno value: some file systems tell only now that a write has
    // failed.
    int close();

    // It has another name now, so it stays.
    void keep() { fileName.clear(); }

private:
    int directory;
    std::string fileName; // empty: nothing is there to go
    int file;
    Interrupt::Guard guard;
};

} // namespace olmkit

#endif
