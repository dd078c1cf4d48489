#ifndef OLMKIT_CLI_ROWS_LISTING_H
#define OLMKIT_CLI_ROWS_LISTING_H

#include <memory>
#include <optional>
#include <string>

#include "cli/rows/ItemFilter.h"
#include "cli/rows/ListOptions.h"
#include "cli/rows/RowSorter.h"
#include "cli/rows/RowWriter.h"
#include "cli/terminal/Output.h"
#include "host/session/Row.h"

namespace olmkit {

// Writes the rows that the options select, in their format. Rows are written as they come, unless
// they are sorted: then all are held until the last one.
class Listing {
public:
    // `output` is borrowed and must outlive the listing.
    Listing(const ListOptions& options, Output& output);

    // Takes the next row of the archive. Returns false when the output has failed.
    bool take(const olmhost::Row& row);

    // Ends the list. Call it once, after the last row of the archive.
    void finish();

private:
    void begin();

    ItemFilter filter;
    bool isFiltered;
    Output& output;
    std::unique_ptr<RowWriter> writer;
    std::optional<RowSorter> sorter;
    std::string line; // of the current row, when rows are sorted
    bool hasBegun = false;
};

} // namespace olmkit

#endif
