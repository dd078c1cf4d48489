#include "cli/report/TimeLine.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace olmkit {

namespace {

constexpr std::int64_t monthsPerYear = 12;
constexpr std::size_t maxMonthBars = 120;
constexpr std::int64_t maxEmptyBars = 12; // in succession; a longer gap becomes one bar

// Returns the first second of a month, as seconds since 1970. `month` counts from the year 0.
std::int64_t startOfMonth(std::int64_t month) {
    const std::int64_t year = month / monthsPerYear;
    const std::int64_t rest = month % monthsPerYear;
    const std::chrono::year_month_day day{std::chrono::year(static_cast<int>(year)),
                                          std::chrono::month(static_cast<unsigned>(rest) + 1),
                                          std::chrono::day(1)};
    return std::chrono::seconds(std::chrono::sys_days(day).time_since_epoch()).count();
}

std::string barLabelOf(std::int64_t month, bool isYear) {
    std::array<char, 32> text = {};
    if (isYear) {
        std::snprintf(text.data(), text.size(), "%04d", static_cast<int>(month / monthsPerYear));
    } else {
        std::snprintf(text.data(), text.size(), "%04d-%02d",
                      static_cast<int>(month / monthsPerYear),
                      static_cast<int>(month % monthsPerYear) + 1);
    }
    return text.data();
}

// Returns bars of `step` months each. `counts` are the items of each bar that has any.
std::vector<TimeBar> barsOf(const std::map<std::int64_t, std::uint64_t>& counts,
                            std::int64_t step) {
    std::vector<TimeBar> bars;
    const auto add = [&](std::int64_t from, std::int64_t to, std::uint64_t items) {
        const bool isOne = to == from + 1;
        bars.push_back({isOne ? barLabelOf(from * step, step == monthsPerYear) : "",
                        startOfMonth(from * step), startOfMonth(to * step), items});
    };
    std::int64_t next = 0;
    for (const auto& [place, items] : counts) {
        if (!bars.empty() && place - next > maxEmptyBars) {
            add(next, place, 0);
            next = place;
        }
        for (; !bars.empty() && next < place; ++next) {
            add(next, next + 1, 0);
        }
        add(place, place + 1, items);
        next = place + 1;
    }
    return bars;
}

} // namespace

void TimeLine::add(Moment moment) {
    const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(moment));
    ++months[int{date.year()} * monthsPerYear + unsigned{date.month()} - 1];
}

std::vector<TimeBar> TimeLine::bars() const {
    std::vector<TimeBar> bars = barsOf(months, 1);
    if (bars.size() <= maxMonthBars) {
        return bars;
    }
    std::map<std::int64_t, std::uint64_t> years;
    for (const auto& [month, items] : months) {
        years[month / monthsPerYear] += items;
    }
    return barsOf(years, monthsPerYear);
}

} // namespace olmkit
