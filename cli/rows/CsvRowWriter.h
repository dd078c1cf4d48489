#ifndef OLMKIT_CLI_ROWS_CSVROWWRITER_H
#define OLMKIT_CLI_ROWS_CSVROWWRITER_H

#include <string>
#include <utility>

#include "cli/rows/RowColumn.h"
#include "cli/rows/RowWriter.h"

namespace olmkit {

// Writes comma-separated values (RFC 4180) with a header line.
class CsvRowWriter : public RowWriter {
public:
    explicit CsvRowWriter(RowColumns columns) : columns(std::move(columns)) {}

    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    RowColumns columns;
    std::string field;
};

} // namespace olmkit

#endif
