#include "cli/rows/Listing.h"

#include <cstdlib>
#include <utility>

#include "cli/rows/CsvRowWriter.h"
#include "cli/rows/JsonRowWriter.h"
#include "cli/rows/TableRowWriter.h"

namespace olmkit {

namespace {

// Returns whether the user asks for plain text even on a terminal (no-color.org).
bool isPlainWanted() {
    const char* noColor = std::getenv("NO_COLOR");
    return noColor != nullptr && *noColor != '\0';
}

std::unique_ptr<RowWriter> makeWriter(const ListOptions& options, const Output& output) {
    const bool isTable = options.format == RowFormat::Table;
    const unsigned width = isTable ? output.terminalWidth() : 0;
    RowColumns columns = options.columns;
    if (columns.empty()) {
        columns = isTable ? tableColumns(width) : scriptColumns();
    }
    switch (options.format) {
    case RowFormat::Csv:
        return std::make_unique<CsvRowWriter>(std::move(columns), output.terminalWidth() != 0);
    case RowFormat::JsonLines:
        return std::make_unique<JsonRowWriter>(std::move(columns));
    case RowFormat::Table:
        break;
    }
    return std::make_unique<TableRowWriter>(std::move(columns), width,
                                            width != 0 && !isPlainWanted());
}

} // namespace

Listing::Listing(const ListOptions& options, Output& output)
    : filter(options.filter), isFiltered(!filter.takesEverything()), output(output),
      writer(makeWriter(options, output)) {
    if (options.order) {
        sorter.emplace(*options.order);
    }
}

bool Listing::take(const olmhost::Row& row) {
    if (isFiltered && !filter.takes(row)) {
        // An earlier row may still be in the buffer.
        return output.buffer().empty() ? !output.failed() : output.endRecord();
    }
    if (sorter) {
        line.clear();
        writer->write(line, row);
        sorter->add(row, line);
        return !output.failed();
    }
    begin();
    writer->write(output.buffer(), row);
    return output.endRecord();
}

void Listing::finish() {
    begin();
    if (sorter) {
        sorter->sort();
        for (std::size_t place = 0; place < sorter->size() && !output.failed(); ++place) {
            output.buffer() += sorter->line(place);
            output.endRecord();
        }
    }
}

void Listing::begin() {
    if (!hasBegun) {
        writer->begin(output.buffer());
        hasBegun = true;
    }
}

} // namespace olmkit
