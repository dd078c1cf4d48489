#ifndef OLMKIT_CLI_ROWS_FILTEROPTIONS_H
#define OLMKIT_CLI_ROWS_FILTEROPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "cli/rows/Moment.h"

namespace olmkit {

// Which items a command is about: those that keep every rule which is given. Of several kinds or
// folders an item has one. Texts are UTF-8.
struct FilterOptions {
    std::vector<std::string> kinds;     // as kindOf() has them
    std::vector<std::string> folders;   // patterns, see Glob
    std::optional<std::string> from;    // part of the sender or the organizer
    std::optional<std::string> subject; // part of the item's label, see labelOf()
    std::optional<Moment> since;        // the first moment that counts
    std::optional<Moment> until;        // the first moment that doesn't count any more

    bool takesEverything() const {
        return kinds.empty() && folders.empty() && !from && !subject && !since && !until;
    }
};

} // namespace olmkit

#endif
