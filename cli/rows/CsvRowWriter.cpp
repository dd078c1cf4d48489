#include "cli/rows/CsvRowWriter.h"

#include <string_view>

#include "cli/rows/ItemRow.h"
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
    out += "index,entry,item,entry_name,kind";
    for (const NamedColumn& named : namedColumns) {
        out += ',';
        out += named.key;
    }
    out += ",special6,special7";
    out += lineEnd;
}

void CsvRowWriter::write(std::string& out, const olmhost::Row& row) {
    out += std::to_string(row.index);
    out += ',';
    out += std::to_string(row.entry);
    out += ',';
    out += std::to_string(row.item);
    out += ',';
    appendField(out, row.entryName);
    out += ',';
    out += kindOf(row);
    for (const NamedColumn& named : namedColumns) {
        field.clear();
        appendUtf8(field, shownText(row, named.column, scratch));
        out += ',';
        appendField(out, field);
    }
    for (const std::uint32_t special : row.specials) {
        out += ',';
        out += std::to_string(special);
    }
    out += lineEnd;
}

} // namespace olmkit
