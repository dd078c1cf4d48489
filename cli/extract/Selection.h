#ifndef OLMKIT_CLI_EXTRACT_SELECTION_H
#define OLMKIT_CLI_EXTRACT_SELECTION_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "cli/rows/ItemFilter.h"
#include "host/session/Row.h"

namespace olmkit {

// Which items an extraction is to write. Rows are asked for in index order.
class Selection {
public:
    explicit Selection(const ExtractOptions& options);

    // Whether the item of the next row is wanted for itself, by its index or by what it is.
    bool takesRow(const olmhost::Row& row);

    // Whether the item at that place is wanted by its place.
    bool takesPlace(const ItemPlace& place) { return missingPlaces.erase(place) != 0; }

    // Whether no row that is still to come can be wanted.
    bool isExhausted() const {
        return !everything && nextIndex == indexes.size() && missingPlaces.empty();
    }

    // Wanted indexes that no row had, ascending.
    std::span<const std::uint64_t> indexesLeft() const {
        return std::span(indexes).subspan(nextIndex);
    }

    // All wanted places, each once, in the order in which they were asked for.
    const std::vector<ItemPlace>& places() const { return wantedPlaces; }

private:
    bool everything;
    ItemFilter filter;
    Shard shard;
    std::vector<std::uint64_t> indexes; // of the shard, ascending, each once
    std::size_t nextIndex = 0;          // of the first one that is not passed
    std::vector<ItemPlace> wantedPlaces;
    std::set<ItemPlace> missingPlaces; // no row had them so far
};

} // namespace olmkit

#endif
