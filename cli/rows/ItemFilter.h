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

// Decides which rows FilterOptions select. It never changes, so threads may share it.
class ItemFilter {
public:
    explicit ItemFilter(const FilterOptions& options);

    bool takes(const olmhost::Row& row) const;
    bool takes(const olmhost::Row& row, const RowFacts& facts) const; // of that row

    // Returns true without any rule, when takes() is true for every row.
    bool takesEverything() const;

private:
    bool takesFolderOf(const olmhost::Row& row) const;
    bool takesDate(const std::optional<Moment>& moment) const;

    std::vector<std::string> kinds;
    std::vector<Glob> folders;
    std::optional<std::string> from; // in the form of comparableText(), like `subject`
    std::optional<std::string> subject;
    std::optional<Moment> since;
    std::optional<Moment> until;
};

} // namespace olmkit

#endif
