#include "cli/JsonRowWriter.h"

#include "cli/ItemRow.h"
#include "cli/JsonLine.h"

namespace olmkit {

void JsonRowWriter::write(std::string& out, const olmhost::Row& row) {
    JsonLine line(out);
    line.number("index", row.index);
    line.number("entry", row.entry);
    line.number("item", row.item);
    line.text("entry_name", row.entryName);
    line.text("kind", kindOf(row));
    for (const NamedColumn& named : namedColumns) {
        line.text(named.key, shownText(row, named.column, scratch));
    }
    line.number("special6", row.specials[0]);
    line.number("special7", row.specials[1]);
    line.end();
}

} // namespace olmkit
