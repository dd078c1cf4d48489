#ifndef OLMKIT_CLI_SHOW_ITEMTEXT_H
#define OLMKIT_CLI_SHOW_ITEMTEXT_H

#include <string>
#include <string_view>

#include "cli/rows/JsonLine.h"

namespace olmkit {

// Lays an item's description out for people.
//
// On a terminal, values wrap to its width. Elsewhere each value is one line, whole, so that other
// programs can search them.
class ItemText {
public:
    // `width` is the terminal's, in cells; 0 without one.
    ItemText(std::string& out, unsigned width) : out(out), width(width) {}

    // `described` is what describeItem() gives.
    void write(const JsonObject& described, std::string_view entryName);

private:
    using Cells = std::vector<std::string>;

    // Lines of a table: cells, and the values that stand behind them below each other.
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
