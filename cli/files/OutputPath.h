#ifndef OLMKIT_CLI_FILES_OUTPUTPATH_H
#define OLMKIT_CLI_FILES_OUTPUTPATH_H

#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// The place of a file below an output folder. Each level is a name of its own, without "/".
struct OutputPath {
    std::vector<std::string> folders; // the outermost first
    std::string file;

    // Returns the levels with "/" between them.
    std::string text() const;

    // Splits such a text.
    static OutputPath of(std::string_view text);
};

} // namespace olmkit

#endif
