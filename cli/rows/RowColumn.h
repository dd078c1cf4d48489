#ifndef OLMKIT_CLI_ROWS_ROWCOLUMN_H
#define OLMKIT_CLI_ROWS_ROWCOLUMN_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/Row.h"

namespace olmkit {

// One thing that can be shown of a row.
struct RowColumn {
    const char* key;     // the name that scripts know
    const char* heading; // over a table
    unsigned room;       // cells that it usually takes in a table
    unsigned share;      // of the terminal's cells that are left over; with 0 it gets `room`

    // One of the two is null.
    std::uint64_t (*number)(const olmhost::Row& row);
    void (*appendText)(std::string& out, const olmhost::Row& row); // as UTF-8

    // Whether the text is a date.
    bool isDate = false;
};

using RowColumns = std::vector<const RowColumn*>;

std::span<const RowColumn> allColumns();

// What csv and jsonl give when nothing else is asked for.
RowColumns scriptColumns();

// What a table gives when nothing else is asked for, on a terminal of that width in cells. A narrow
// one has no folders, or no senders either; 0 is no terminal.
RowColumns tableColumns(unsigned width);

// The column of that key, or null.
const RowColumn* findColumn(std::string_view key);

} // namespace olmkit

#endif
