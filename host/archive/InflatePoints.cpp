#include "host/archive/InflatePoints.h"

#include <iterator>

namespace olmhost {

void InflatePoints::offer(std::uint64_t index, const Inflater& inflater) {
    const std::uint64_t stretch = inflater.made() / spacing;
    // The first stretch needs no point: it begins at the entry's start.
    if (stretch == 0 || points.contains({index, stretch})) {
        return;
    }
    if (points.size() >= maxCount) {
        thinOut();
        offer(index, inflater);
        return;
    }
    points.try_emplace({index, stretch}, inflater);
}

const Inflater* InflatePoints::before(std::uint64_t index, std::uint64_t position) const {
    auto place = points.upper_bound({index, position / spacing});
    while (place != points.begin()) {
        place = std::prev(place);
        if (place->first.first != index) {
            return nullptr;
        }
        if (place->second.made() <= position) {
            return &place->second;
        }
    }
    return nullptr;
}

void InflatePoints::thinOut() {
    spacing *= 2;
    std::map<Place, Inflater> kept;
    while (!points.empty()) {
        auto node = points.extract(points.begin());
        node.key().second = node.mapped().made() / spacing;
        if (node.key().second != 0) {
            kept.insert(std::move(node));
        }
    }
    points.swap(kept);
}

} // namespace olmhost
