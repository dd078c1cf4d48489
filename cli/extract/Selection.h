#ifndef OLMKIT_CLI_EXTRACT_SELECTION_H
#define OLMKIT_CLI_EXTRACT_SELECTION_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/rows/ItemFilter.h"
#include "cli/rows/RowFacts.h"
#include "host/session/Row.h"

namespace olmkit {

// The items that an extraction is to write. Rows are passed in index order.
class Selection {
public:
    explicit Selection(const ExtractOptions& options);

    // Whether the item of the next row is wanted by its index or by the filter.
    bool takesRow(const olmhost::Row& row, const RowFacts& facts);

    // Whether the item at that place is wanted by its place. Call it once for each place.
    bool takesPlace(const ItemPlace& place) { return missingPlaces.erase(place) != 0; }

    // Whether no later row can be wanted.
    bool isExhausted() const {
        return !everything && nextIndex == indexes.size() && missingPlaces.empty();
    }

    // Returns the wanted indexes that no row had, in ascending order.
    std::span<const std::uint64_t> indexesLeft() const {
        return std::span(indexes).subspan(nextIndex);
    }

    // Returns all wanted places, each once, in the order of the options.
    const std::vector<ItemPlace>& places() const { return wantedPlaces; }

private:
    bool everything;
    ItemFilter filter;
    Shard shard;
    std::vector<std::uint64_t> indexes; // of the shard, ascending, each once
    std::size_t nextIndex = 0;          // in `indexes`, of the first one that no row had yet
    std::vector<ItemPlace> wantedPlaces;
    std::set<ItemPlace> missingPlaces; // that no row had yet
};

} // namespace olmkit

#endif
