#include "host/archive/InflatedEntries.h"

#include <algorithm>

namespace olmhost {

std::shared_ptr<InflatedEntry> InflatedEntries::open(std::uint64_t index, const EntryInfo& info) {
    const auto known = std::find_if(held.begin(), held.end(), [index](const auto& entry) {
        return entry->entryIndex() == index;
    });
    if (known != held.end()) {
        std::rotate(known, known + 1, held.end());
        return held.back();
    }
    auto entry = takeOldest();
    entry->begin(index, info);
    held.push_back(entry);
    return entry;
}

// An entry to be begun anew: the one that was opened longest ago when all places are taken and
// nobody reads it.
std::shared_ptr<InflatedEntry> InflatedEntries::takeOldest() {
    if (held.size() == mostHeld) {
        auto oldest = std::move(held.front());
        held.erase(held.begin());
        if (oldest.use_count() == 1) {
            return oldest;
        }
    }
    return std::make_shared<InflatedEntry>(bytes, file, points, inflated);
}

} // namespace olmhost
