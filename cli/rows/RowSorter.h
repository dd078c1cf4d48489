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

// Holds written rows and sorts them: numbers by value, dates by moment, after those that can't be
// read, texts without regard to case, independent of the language. Equal rows keep their order.
class RowSorter {
public:
    explicit RowSorter(SortOrder order) : order(order) {}

    // Adds a row and the line written for it, which is copied.
    void add(const olmhost::Row& row, std::string_view line);

    // Sorts the rows. The lines are valid as long as the sorter.
    void sort();
    std::size_t size() const { return rows.size(); }
    std::string_view line(std::size_t place) const { return rows[place].line; }

private:
    struct HeldRow {
        std::int64_t number; // the key when it is a number or a date
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
