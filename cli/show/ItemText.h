#ifndef OLMKIT_CLI_SHOW_ITEMTEXT_H
#define OLMKIT_CLI_SHOW_ITEMTEXT_H

#include <string>
#include <string_view>

#include "cli/rows/JsonLine.h"

namespace olmkit {

// Formats the description of an item as text.
//
// On a terminal, values wrap at its width. Elsewhere each value is one whole line, so that other
// programs can search it.
class ItemText {
public:
    // `out` is borrowed. `width` is the width of the terminal in cells, 0 without one.
    ItemText(std::string& out, unsigned width) : out(out), width(width) {}

    // Appends an item as returned by describeItem(). `entryName` is UTF-8.
    void write(const JsonObject& described, std::string_view entryName);

private:
    using Cells = std::vector<std::string>;

    // A row of a table: cells, and the values after them, one per line.
    struct Row {
        Cells cells;
        Cells values;
    };

    void writeProperties(const JsonObject& properties, unsigned indent);
    void writeTable(const std::vector<Row>& rows, unsigned indent);
    void writeRow(const Row& row, const std::vector<unsigned>& widths, unsigned indent);
    void writeWrapped(std::string_view text, unsigned start, unsigned indent);
    void writeRecipients(const JsonObject& recipients);
    void writeAttachments(const JsonObject& attachments);
    void writeRecurrence(const JsonObject& recurrence);
    void writeHeading(std::string_view text);

    std::string& out;
    unsigned width;
};

} // namespace olmkit

#endif
