#ifndef OLMKIT_CLI_ROWS_ROWCOLUMN_H
#define OLMKIT_CLI_ROWS_ROWCOLUMN_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/Row.h"

namespace olmkit {

// A value of a row that can be shown as a column.
struct RowColumn {
    const char* key;     // its name in CSV, JSON and --columns
    const char* heading; // its name in a table
    unsigned width;      // its default width in a table, in cells
    unsigned share;      // of the terminal's cells left over; with 0 it always gets `width`

    // One of the two is null.
    std::uint64_t (*number)(const olmhost::Row& row);
    void (*appendText)(std::string& out, const olmhost::Row& row); // as UTF-8

    // Whether the text is a date.
    bool isDate = false;
};

using RowColumns = std::vector<const RowColumn*>;

std::span<const RowColumn> allColumns();

// Returns the default columns of csv and jsonl.
RowColumns scriptColumns();

// Returns the default columns of a table on a terminal of `width` cells, or without a terminal for
// 0. Narrow terminals have no folders, or neither folders nor senders.
RowColumns tableColumns(unsigned width);

// Returns the column with that key, or null.
const RowColumn* findColumn(std::string_view key);

} // namespace olmkit

#endif
