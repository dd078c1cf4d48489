#ifndef OLMKIT_CLI_REPORT_TIMELINE_H
#define OLMKIT_CLI_REPORT_TIMELINE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "cli/rows/Moment.h"

namespace olmkit {

// One month or year, or a gap of several without any items.
struct TimeBar {
    std::string label;   // YYYY-MM or YYYY; empty for a gap
    std::int64_t begin;  // seconds since 1970
    std::int64_t end;    // the first second after it
    std::uint64_t items; // in it
};

// Counts items by month and returns them as bars: by month while there are few, otherwise by year.
// A long gap is one bar, so a single wrong date a century away takes no space.
class TimeLine {
public:
    void add(Moment moment);

    std::vector<TimeBar> bars() const;

private:
    std::map<std::int64_t, std::uint64_t> months; // items by month, counted from the year 0
};

} // namespace olmkit

#endif
