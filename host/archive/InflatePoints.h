#ifndef OLMKIT_HOST_ARCHIVE_INFLATEPOINTS_H
#define OLMKIT_HOST_ARCHIVE_INFLATEPOINTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "host/archive/Inflater.h"

namespace olmhost {

// Points in the deflated entries of one archive from which inflating can continue, so that seeking
// never inflates an entry from its start.
//
// A point costs about 40 KB. When the limit is reached, every other one is dropped and the spacing
// doubles.
class InflatePoints {
public:
    static constexpr std::uint64_t firstSpacing = std::uint64_t{1} << 20; // bytes, inflated
    static constexpr std::size_t defaultMaxCount = 800;

    explicit InflatePoints(std::uint64_t spacing = firstSpacing,
                           std::size_t maxCount = defaultMaxCount)
        : spacing(spacing), maxCount(maxCount) {}

    // Keeps a copy of `inflater`, which is somewhere in the entry `index`, unless its stretch has a
    // point already.
    void offer(std::uint64_t index, const Inflater& inflater);

    // Returns the last point of the entry at or before `position` (inflated bytes); null when there
    // is none. Valid until the next offer().
    const Inflater* before(std::uint64_t index, std::uint64_t position) const;

    std::size_t count() const { return points.size(); }

private:
    // Entry and stretch: the number of whole spacings before the point. A stretch has one point.
    using Place = std::pair<std::uint64_t, std::uint64_t>;

    void thinOut();

    std::uint64_t spacing; // inflated bytes
    std::size_t maxCount;
    std::map<Place, Inflater> points;
};

} // namespace olmhost

#endif
