#ifndef OLMKIT_CLI_ROWS_CSVROWWRITER_H
#define OLMKIT_CLI_ROWS_CSVROWWRITER_H

#include <string>
#include <utility>

#include "cli/rows/RowColumn.h"
#include "cli/rows/RowWriter.h"

namespace olmkit {

// Writes comma-separated values (RFC 4180) with a header line.
//
// CSV has no escapes. A file or a pipe gets every text as it is, line ends and control characters
// included. On a terminal they are replaced as in a table, and direction marks are dropped, so that
// a row is one line and nothing in it acts on the terminal.
class CsvRowWriter : public RowWriter {
public:
    CsvRowWriter(RowColumns columns, bool isForTerminal)
        : columns(std::move(columns)), isForTerminal(isForTerminal) {}

    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    RowColumns columns;
    bool isForTerminal;
    std::string field;
    std::string raw;
};

} // namespace olmkit

#endif
