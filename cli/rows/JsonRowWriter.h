#ifndef OLMKIT_CLI_ROWS_JSONROWWRITER_H
#define OLMKIT_CLI_ROWS_JSONROWWRITER_H

#include <string>

#include "cli/rows/RowWriter.h"

namespace olmkit {

// One JSON object a line.
class JsonRowWriter : public RowWriter {
public:
    void begin(std::string& /*out*/) override {}
    void write(std::string& out, const olmhost::Row& row) override;

private:
    std::u16string scratch;
};

} // namespace olmkit

#endif
