#include "cli/rows/JsonRowWriter.h"

#include "cli/rows/ItemRow.h"
#include "cli/rows/JsonLine.h"
#include "cli/terminal/Text.h"

namespace olmkit {

void JsonRowWriter::write(std::string& out, const olmhost::Row& row) {
    JsonObject object;
    object["index"] = row.index;
    object["entry"] = row.entry;
    object["item"] = row.item;
    object["entry_name"] = row.entryName;
    object["kind"] = kindOf(row);
    for (const NamedColumn& named : namedColumns) {
        std::string text;
        appendUtf8(text, shownText(row, named.column, scratch));
        object[named.key] = std::move(text);
    }
    object["special6"] = row.specials[0];
    object["special7"] = row.specials[1];
    appendLine(out, object);
}

} // namespace olmkit
