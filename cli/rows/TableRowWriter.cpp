#include "cli/rows/TableRowWriter.h"

#include <algorithm>
#include <utility>

#include "cli/rows/Moment.h"
#include "cli/terminal/CellText.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr unsigned minShare = 8; // cells of a column that gets a share
constexpr std::string_view boldOn = "\x1B[1m";
constexpr std::string_view boldOff = "\x1B[0m";

} // namespace

TableRowWriter::TableRowWriter(RowColumns columns, unsigned width, bool isStyled)
    : columns(std::move(columns)), terminalWidth(width), isStyled(isStyled) {
    for (const RowColumn* column : this->columns) {
        widths.push_back(column->width);
    }
    if (terminalWidth != 0) {
        shareTerminal();
    }
}

// Divides the cells that fixed columns and gaps leave over among the columns that have a share.
void TableRowWriter::shareTerminal() {
    unsigned taken = (static_cast<unsigned>(columns.size()) - 1) * columnGap;
    unsigned shares = 0;
    for (const RowColumn* column : columns) {
        taken += column->share == 0 ? column->width : 0;
        shares += column->share;
    }
    if (shares == 0) {
        return;
    }
    const unsigned left = terminalWidth > taken ? terminalWidth - taken : 0;
    unsigned sharesBefore = 0;
    for (std::size_t place = 0; place < columns.size(); ++place) {
        const unsigned share = columns[place]->share;
        if (share != 0) {
            const unsigned start = left * sharesBefore / shares;
            sharesBefore += share;
            widths[place] = std::max(left * sharesBefore / shares - start, minShare);
        }
    }
}

void TableRowWriter::begin(std::string& out) {
    for (std::size_t place = 0; place < columns.size(); ++place) {
        putCell(place, columns[place]->heading);
    }
    out += isStyled ? boldOn : "";
    endLine(out);
    if (isStyled) {
        out.insert(out.size() - 1, boldOff);
    }
}

void TableRowWriter::write(std::string& out, const olmhost::Row& row) {
    for (std::size_t place = 0; place < columns.size(); ++place) {
        const RowColumn& column = *columns[place];
        if (column.number != nullptr) {
            cell = std::to_string(column.number(row));
            cell.insert(0, widths[place] - std::min<std::size_t>(widths[place], cell.size()), ' ');
        } else {
            raw.clear();
            column.appendText(raw, row);
            if (column.isDate && raw.size() > column.width) {
                raw = shortDate(raw);
            }
            cell.clear();
            appendPrintable(cell, raw);
        }
        putCell(place, cell);
    }
    endLine(out);
}

void TableRowWriter::putCell(std::size_t place, std::string_view text) {
    const bool mayBeCut = terminalWidth != 0 && columns[place]->number == nullptr;
    if (mayBeCut) {
        appendFitted(line, text, widths[place]);
    } else {
        line += text;
        const unsigned needed = cellsOf(text);
        line.append(widths[place] - std::min(widths[place], needed), ' ');
    }
    line.append(columnGap, ' ');
}

void TableRowWriter::endLine(std::string& out) {
    line.erase(line.find_last_not_of(' ') + 1);
    if (terminalWidth != 0 && cellsOf(line) > terminalWidth) {
        appendFitted(out, line, terminalWidth);
    } else {
        out += line;
    }
    out += '\n';
    line.clear();
}

} // namespace olmkit
