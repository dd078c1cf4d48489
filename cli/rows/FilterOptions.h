#ifndef OLMKIT_CLI_ROWS_FILTEROPTIONS_H
#define OLMKIT_CLI_ROWS_FILTEROPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "cli/rows/Moment.h"

namespace olmkit {

// Which items a command takes: those that match every rule given. With several kinds or folders,
// one match is enough. Texts are UTF-8.
struct FilterOptions {
    std::vector<std::string> kinds;     // as returned by kindOf()
    std::vector<std::string> folders;   // patterns, see Glob
    std::optional<std::string> from;    // part of the sender or the organizer
    std::optional<std::string> subject; // part of the item's label, see labelOf()
    std::optional<Moment> since;        // inclusive
    std::optional<Moment> until;        // exclusive

    bool takesEverything() const {
        return kinds.empty() && folders.empty() && !from && !subject && !since && !until;
    }
};

} // namespace olmkit

#endif
