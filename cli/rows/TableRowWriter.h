#ifndef OLMKIT_CLI_ROWS_TABLEROWWRITER_H
#define OLMKIT_CLI_ROWS_TABLEROWWRITER_H

#include <string>
#include <string_view>
#include <vector>

#include "cli/rows/RowColumn.h"
#include "cli/rows/RowWriter.h"

namespace olmkit {

// Writes a table of fixed column widths, so that the first row can be shown at once. Control
// characters in the texts are replaced.
class TableRowWriter : public RowWriter {
public:
    // `width` is the width of the terminal in cells: no line is longer, and a text too long for its
    // column is cut with an ellipsis. With 0 nothing is cut. `isStyled` makes the headings bold,
    // for terminals only.
    TableRowWriter(RowColumns columns, unsigned width, bool isStyled);

    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    void shareTerminal();
    void putCell(std::size_t place, std::string_view text);
    void endLine(std::string& out);

    RowColumns columns;
    std::vector<unsigned> widths; // of the columns, in cells
    unsigned terminalWidth;
    bool isStyled;
    std::string line;
    std::string raw;
    std::string cell;
};

} // namespace olmkit

#endif
