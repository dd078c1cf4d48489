#include "cli/extract/Selection.h"

#include <algorithm>

namespace olmkit {

Selection::Selection(const ExtractOptions& options)
    : everything(options.isEverything()), filter(options.filter),
      shard(options.shard.value_or(Shard())), indexes(options.items) {
    std::ranges::sort(indexes);
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    std::erase_if(indexes, [this](std::uint64_t index) { return !shard.takes(index); });
    for (const ItemPlace& place : options.places) {
        if (missingPlaces.insert(place).second) {
            wantedPlaces.push_back(place);
        }
    }
}

bool Selection::takesRow(const olmhost::Row& row, const RowFacts& facts) {
    if (everything) {
        return shard.takes(row.index) && filter.takes(row, facts);
    }
    if (nextIndex < indexes.size() && indexes[nextIndex] == row.index) {
        ++nextIndex;
        return true;
    }
    return false;
}

} // namespace olmkit
