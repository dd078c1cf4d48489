#ifndef OLMKIT_CLI_COMMAND_LISTOPTIONS_H
#define OLMKIT_CLI_COMMAND_LISTOPTIONS_H

#include <string>

namespace olmkit {

enum class RowFormat { Table, Csv, JsonLines };

struct ListOptions {
    std::string archive;
    RowFormat format = RowFormat::Table;
};

} // namespace olmkit

#endif
