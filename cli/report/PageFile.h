#ifndef OLMKIT_CLI_REPORT_PAGEFILE_H
#define OLMKIT_CLI_REPORT_PAGEFILE_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/files/OutputDirectory.h"
#include "cli/files/TemporaryFile.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// A file that appears under its name only when it is complete. Until finish() it is a temporary
// file in the same folder, which is removed with this object or when the process is interrupted.
class PageFile {
public:
    // Creates the temporary file for `path`, whose folder must exist. Returns 0 or an errno value:
    // EISDIR or EINVAL when `path` is not a regular file, which a page must not replace.
    int open(const std::string& path);

    // The text to append to. Call endRecord() regularly, to write it; it returns false when the
    // file has failed.
    std::string& buffer() { return output->buffer(); }
    bool endRecord();
    bool failed() const { return output->failed(); }

    // Returns the bytes written so far.
    std::uint64_t size() const { return written; }

    // Completes the file and gives it its name, replacing any existing file. Returns 0 or an errno
    // value.
    int finish();

private:
    OutputDirectory directory; // must outlive `file`
    std::optional<TemporaryFile> file;
    std::optional<Output> output;
    std::string name;
    std::uint64_t written = 0;
};

} // namespace olmkit

#endif
