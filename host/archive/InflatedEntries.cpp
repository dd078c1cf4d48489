#include "host/archive/InflatedEntries.h"

#include <algorithm>

namespace olmhost {

std::shared_ptr<InflatedEntry> InflatedEntries::open(std::uint64_t index, const EntryInfo& info) {
    const auto known = std::find_if(held.begin(), held.end(), [index](const auto& entry) {
        return entry->entryIndex() == index;
    });
    if (known != held.end()) {
        std::rotate(known, known + 1, held.end());
        if (held.back()->hasReadFailed()) {
            held.back()->begin(index, info);
        }
        return held.back();
    }
    auto entry = takeOldest();
    entry->begin(index, info);
    held.push_back(entry);
    return entry;
}

// Returns an object for another entry: that of the entry opened longest ago, when as many are held
// as allowed and it is no longer read; otherwise a new one.
std::shared_ptr<InflatedEntry> InflatedEntries::takeOldest() {
    if (held.size() == maxHeld) {
        auto oldest = std::move(held.front());
        held.erase(held.begin());
        if (oldest.use_count() == 1) {
            return oldest;
        }
    }
    return std::make_shared<InflatedEntry>(bytes, file, points, inflated);
}

} // namespace olmhost
