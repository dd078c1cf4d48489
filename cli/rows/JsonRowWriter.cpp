#include "cli/rows/JsonRowWriter.h"

#include "cli/rows/JsonLine.h"

namespace olmkit {

void JsonRowWriter::write(std::string& out, const olmhost::Row& row) {
    JsonObject object;
    for (const RowColumn* column : columns) {
        if (column->number != nullptr) {
            object[column->key] = column->number(row);
        } else {
            std::string text;
            column->appendText(text, row);
            object[column->key] = std::move(text);
        }
    }
    appendShown(out, object);
}

} // namespace olmkit
