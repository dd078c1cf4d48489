#ifndef OLMKIT_CLI_ROWS_ROWSORTER_H
#define OLMKIT_CLI_ROWS_ROWSORTER_H

#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "cli/rows/RowColumn.h"

namespace olmkit {

struct SortOrder {
    const RowColumn* column = nullptr;
    bool isDescending = false;
};

// Holds written rows until all are there, and gives them in order: numbers by number, dates by
// moment with those that are none ahead, texts without regard to case and with no language's rules.
// Rows that are equal stay in the order in which they came.
class RowSorter {
public:
    explicit RowSorter(SortOrder order) : order(order) {}

    // Takes a row and the line that was written for it, which is copied.
    void add(const olmhost::Row& row, std::string_view line);

    // Sorts what was added. The lines are valid as long as the sorter.
    void sort();
    std::size_t size() const { return rows.size(); }
    std::string_view line(std::size_t place) const { return rows[place].line; }

private:
    struct HeldRow {
        std::int64_t number; // of a number or a date
        std::string_view text;
        std::string_view line;
    };

    std::string_view keep(std::string_view text);

    SortOrder order;
    std::pmr::monotonic_buffer_resource texts;
    std::vector<HeldRow> rows;
};

} // namespace olmkit

#endif
