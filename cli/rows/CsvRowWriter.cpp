#include "cli/rows/CsvRowWriter.h"

#include <string_view>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::string_view lineEnd = "\r\n";

void appendField(std::string& out, std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (const char character : text) {
        out += character;
        if (character == '"') {
            out += '"';
        }
    }
    out += '"';
}

} // namespace

void CsvRowWriter::begin(std::string& out) {
    for (const RowColumn* column : columns) {
        out += column == columns.front() ? "" : ",";
        out += column->key;
    }
    out += lineEnd;
}

void CsvRowWriter::write(std::string& out, const olmhost::Row& row) {
    for (const RowColumn* column : columns) {
        out += column == columns.front() ? "" : ",";
        if (column->number != nullptr) {
            out += std::to_string(column->number(row));
        } else {
            field.clear();
            column->appendText(field, row);
            if (isForTerminal) {
                raw.swap(field);
                field.clear();
                appendPrintable(field, raw, DirectionMarks::Dropped);
            }
            appendField(out, field);
        }
    }
    if (columns.size() == 1 && field.empty() && columns.front()->number == nullptr) {
        out += "\"\""; // a blank line would be skipped by readers
    }
    out += lineEnd;
}

} // namespace olmkit
