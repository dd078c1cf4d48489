#ifndef OLMKIT_CLI_REPORT_TIMELINE_H
#define OLMKIT_CLI_REPORT_TIMELINE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "cli/rows/Moment.h"

namespace olmkit {

// One month or year, or a stretch of them without any item.
struct TimeBar {
    std::string label;   // YYYY-MM or YYYY; empty for a stretch
    std::int64_t begin;  // seconds since 1970
    std::int64_t end;    // the first second behind it
    std::uint64_t items; // in it
};

// Counts items by month, and shows them as a row of bars: by month while those are few, otherwise
// by year. Where nothing is for long, one bar stands for all of that, so a lone wrong date a
// century away takes no room.
class TimeLine {
public:
    void add(Moment moment);

    std::vector<TimeBar> bars() const;

private:
    std::map<std::int64_t, std::uint64_t> months; // since the year 0; items
};

} // namespace olmkit

#endif
