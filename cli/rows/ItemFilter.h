#ifndef OLMKIT_CLI_ROWS_ITEMFILTER_H
#define OLMKIT_CLI_ROWS_ITEMFILTER_H

#include <optional>
#include <string>
#include <vector>

#include "cli/rows/FilterOptions.h"
#include "cli/rows/Glob.h"
#include "cli/rows/RowFacts.h"
#include "host/session/Row.h"

namespace olmkit {

// Tells which rows FilterOptions take. It never changes, so several threads may share one.
class ItemFilter {
public:
    explicit ItemFilter(const FilterOptions& options);

    bool takes(const olmhost::Row& row) const;
    bool takes(const olmhost::Row& row, const RowFacts& facts) const; // of that row

    // Whether no rule is given, so that takes() is true for every row.
    bool takesEverything() const;

private:
    bool takesFolderOf(const olmhost::Row& row) const;
    bool takesDate(const std::optional<Moment>& moment) const;

    std::vector<std::string> kinds;
    std::vector<Glob> folders;
    std::optional<std::string> from;    // in comparableText()'s form
    std::optional<std::string> subject; // likewise
    std::optional<Moment> since;
    std::optional<Moment> until;
};

} // namespace olmkit

#endif
