#include "cli/extract/Selection.h"

#include <algorithm>

namespace olmkit {

Selection::Selection(const ExtractOptions& options)
    : everything(options.isEverything()), indexes(options.items) {
    std::ranges::sort(indexes);
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    for (const ItemPlace& place : options.places) {
        if (missingPlaces.insert(place).second) {
            wantedPlaces.push_back(place);
        }
    }
}

bool Selection::takesIndex(std::uint64_t index) {
    if (everything) {
        return true;
    }
    if (nextIndex < indexes.size() && indexes[nextIndex] == index) {
        ++nextIndex;
        return true;
    }
    return false;
}

} // namespace olmkit
