#ifndef OLMKIT_CLI_SHOW_TIMETEXT_H
#define OLMKIT_CLI_SHOW_TIMETEXT_H

#include <cstdint>
#include <string>

// Times since 1601-01-01T00:00 as texts of ISO 8601.
namespace olmkit {

inline constexpr std::uint32_t minutesPerDay = 1'440;

// Of units of 100 ns in universal time: "2019-03-04T08:59:59Z", with a fraction when there is one.
std::string fileTimeText(std::uint64_t units);

// Of minutes in whatever zone they are in: "2019-03-11" and "2019-03-11T09:00".
std::string dayText(std::uint32_t minutes);
std::string minuteText(std::uint32_t minutes);

} // namespace olmkit

#endif
