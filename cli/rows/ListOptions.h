#ifndef OLMKIT_CLI_ROWS_LISTOPTIONS_H
#define OLMKIT_CLI_ROWS_LISTOPTIONS_H

#include <optional>
#include <string>

#include "cli/rows/FilterOptions.h"
#include "cli/rows/RowColumn.h"
#include "cli/rows/RowSorter.h"

namespace olmkit {

enum class RowFormat { Table, Csv, JsonLines };

struct ListOptions {
    std::string archive;
    RowFormat format = RowFormat::Table;
    FilterOptions filter;
    RowColumns columns;             // empty: the default columns of the format
    std::optional<SortOrder> order; // none: the archive's order
};

} // namespace olmkit

#endif
