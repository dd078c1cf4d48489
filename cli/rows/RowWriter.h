#ifndef OLMKIT_CLI_ROWS_ROWWRITER_H
#define OLMKIT_CLI_ROWS_ROWWRITER_H

#include <string>

#include "host/session/Row.h"

namespace olmkit {

// Writes rows in one format.
class RowWriter {
public:
    virtual ~RowWriter() = default;

    // Appends what comes before the rows.
    virtual void begin(std::string& out) = 0;

    // Appends one row with its line end.
    virtual void write(std::string& out, const olmhost::Row& row) = 0;
};

} // namespace olmkit

#endif
