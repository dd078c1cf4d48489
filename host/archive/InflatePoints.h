#ifndef OLMKIT_HOST_ARCHIVE_INFLATEPOINTS_H
#define OLMKIT_HOST_ARCHIVE_INFLATEPOINTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "host/archive/Inflater.h"

namespace olmhost {

// Points within the deflated entries of one archive from which inflating can go on, so that going
// somewhere in an entry never means inflating all that lies ahead of it.
//
// A point costs about 40 KB. When there would be more of them than allowed, every other one goes
// and the spacing doubles.
class InflatePoints {
public:
    static constexpr std::uint64_t firstSpacing = std::uint64_t{1} << 20; // bytes, inflated
    static constexpr std::size_t defaultMost = 800;

    explicit InflatePoints(std::uint64_t spacing = firstSpacing, std::size_t most = defaultMost)
        : spacing(spacing), most(most) {}

    // Keeps a copy of `inflater`, which stands somewhere in the entry `index`, if the place where
    // it stands has no point yet.
    void offer(std::uint64_t index, const Inflater& inflater);

    // The last point of the entry that lies at or ahead of `position` (inflated bytes); null when
    // there is none. Valid until the next offer().
    const Inflater* before(std::uint64_t index, std::uint64_t position) const;

    std::size_t count() const { return points.size(); }

private:
    // Entry and stretch: the number of whole spacings ahead of the point. One point a stretch.
    using Place = std::pair<std::uint64_t, std::uint64_t>;

    void thinOut();

    std::uint64_t spacing; // inflated bytes
    std::size_t most;
    std::map<Place, Inflater> points;
};

} // namespace olmhost

#endif
