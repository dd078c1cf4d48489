#ifndef OLMKIT_CLI_SHOW_TIMETEXT_H
#define OLMKIT_CLI_SHOW_TIMETEXT_H

#include <cstdint>
#include <string>

// Times since 1601-01-01T00:00 as strings in ISO 8601.
namespace olmkit {

inline constexpr std::uint32_t minutesPerDay = 1'440;

// Returns "2019-03-04T08:59:59Z", with a fraction when there is one, for 100 ns units in UTC.
std::string fileTimeText(std::uint64_t units);

// Return "2019-03-11" and "2019-03-11T09:00" for minutes in any zone.
std::string dayText(std::uint32_t minutes);
std::string minuteText(std::uint32_t minutes);

} // namespace olmkit

#endif
