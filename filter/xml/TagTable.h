#ifndef OLMKIT_FILTER_XML_TAGTABLE_H
#define OLMKIT_FILTER_XML_TAGTABLE_H

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>

#include "filter/boundary/Reader.h"

// Returns true when the names are in ascending byte order and none occurs twice, as the reader
// requires of a tag map. For use in static_assert.
constexpr bool inByteOrder(std::span<const UTXML_STRVALPAIR> rows) {
    const auto name = [](const UTXML_STRVALPAIR& row) { return std::string_view(row.name); };
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, name) == rows.end();
}

#endif
