#ifndef OLMKIT_CLI_ROWS_CSVROWWRITER_H
#define OLMKIT_CLI_ROWS_CSVROWWRITER_H

#include <string>

#include "cli/rows/RowWriter.h"

namespace olmkit {

// Comma-separated values as RFC 4180 has them, with a header line.
class CsvRowWriter : public RowWriter {
public:
    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    std::u16string scratch;
    std::string field;
};

} // namespace olmkit

#endif
