#ifndef OLMKIT_CLI_ROWS_TABLEROWWRITER_H
#define OLMKIT_CLI_ROWS_TABLEROWWRITER_H

#include <string>
#include <string_view>
#include <vector>

#include "cli/rows/RowColumn.h"
#include "cli/rows/RowWriter.h"

namespace olmkit {

// A table for people: columns of fixed width, so that the first row can be seen at once. What could
// act on a terminal is taken out of the texts.
class TableRowWriter : public RowWriter {
public:
    // `width` is the terminal's, in cells: no line is longer, and a text that is too long for its
    // column is cut, with an ellipsis. With 0 nothing is cut. `isStyled` makes the headings bold,
    // for terminals alone.
    TableRowWriter(RowColumns columns, unsigned width, bool isStyled);

    void begin(std::string& out) override;
    void write(std::string& out, const olmhost::Row& row) override;

private:
    void shareTerminal();
    void putCell(std::size_t place, std::string_view text);
    void endLine(std::string& out);

    RowColumns columns;
    std::vector<unsigned> rooms; // of the columns, in cells
    unsigned width;
    bool isStyled;
    std::string line;
    std::string raw;
    std::string cell;
};

} // namespace olmkit

#endif
