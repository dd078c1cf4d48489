#ifndef OLMKIT_CLI_JSONROWWRITER_H
#define OLMKIT_CLI_JSONROWWRITER_H

#include <string>

#include "cli/JsonLine.h"
#include "cli/RowWriter.h"

namespace olmkit {

// One JSON object a line.
class JsonRowWriter : public RowWriter {
public:
    void begin(std::string& /*out*/) override {}
    void write(std::string& out, const olmhost::Row& row) override;

private:
    JsonObject object; // of the last row; the next one sets the same members
    std::u16string scratch;
};

} // namespace olmkit

#endif
