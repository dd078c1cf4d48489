#ifndef OLMKIT_CLI_ROWS_JSONROWWRITER_H
#define OLMKIT_CLI_ROWS_JSONROWWRITER_H

#include <string>
#include <utility>

#include "cli/rows/RowColumn.h"
#include "cli/rows/RowWriter.h"

namespace olmkit {

// Writes one JSON object per line, with a member for each column. What acts on a terminal is
// escaped, so the lines are the same on a terminal and in a file.
class JsonRowWriter : public RowWriter {
public:
    explicit JsonRowWriter(RowColumns columns) : columns(std::move(columns)) {}

    void begin(std::string& /*out*/) override {}
    void write(std::string& out, const olmhost::Row& row) override;

private:
    RowColumns columns;
};

} // namespace olmkit

#endif
