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

// Writes the rows that are asked for, as they are asked for. They go out as they come; only an
// order makes them wait for the last one.
class Listing {
public:
    // `output` is borrowed.
    Listing(const ListOptions& options, Output& output);

    // Takes the next row of the archive. False when the output has failed.
    bool take(const olmhost::Row& row);

    // To be called behind the last row of an archive that is listed to its end.
    void finish();

private:
    void begin();

    ItemFilter filter;
    bool isFiltered;
    Output& output;
    std::unique_ptr<RowWriter> writer;
    std::optional<RowSorter> sorter;
    std::string line; // of a row that waits for its place
    bool hasBegun = false;
};

} // namespace olmkit

#endif
