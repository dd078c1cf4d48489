#ifndef OLMKIT_CLI_ROWS_ROWFACTS_H
#define OLMKIT_CLI_ROWS_ROWFACTS_H

#include <optional>
#include <string_view>

#include "cli/rows/ItemRow.h"
#include "cli/rows/Moment.h"

namespace olmkit {

// What filters, totals and timestamps need to know of a row, read from its cells once.
struct RowFacts {
    explicit RowFacts(const olmhost::Row& row) : kind(kindOf(row)), moment(momentOf(row)) {}

    std::string_view kind;        // valid for ever
    std::optional<Moment> moment; // of the row's date
};

} // namespace olmkit

#endif
