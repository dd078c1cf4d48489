#ifndef OLMKIT_CLI_REPORT_PAGEFILE_H
#define OLMKIT_CLI_REPORT_PAGEFILE_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/files/OutputDirectory.h"
#include "cli/files/TemporaryFile.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// A file that appears under its name only when it is whole: until finish() it is a temporary one
// beside it, which goes with this object, or with the process when that is interrupted.
class PageFile {
public:
    // Makes the temporary file for `path`, whose folder is there. 0 or an errno value; EISDIR or
    // EINVAL when something stands there that no page is to replace.
    int open(const std::string& path);

    // What to append to. endRecord() is called now and then: it is false when the file has failed.
    std::string& buffer() { return output->buffer(); }
    bool endRecord();
    bool failed() const { return output->failed(); }

    // Bytes written so far.
    std::uint64_t size() const { return written; }

    // Gives the file its name, in the place of what stands there. 0 or an errno value.
    int finish();

private:
    OutputDirectory directory; // outlives the file in it
    std::optional<TemporaryFile> file;
    std::optional<Output> output;
    std::string name;
    std::uint64_t written = 0;
};

} // namespace olmkit

#endif
