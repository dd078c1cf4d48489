#include "cli/show/TimeText.h"

#include <algorithm>
#include <chrono>
#include <string_view>

namespace olmkit {

namespace {

constexpr std::uint64_t unitsPerSecond = 10'000'000;
constexpr std::size_t fractionDigits = 7;
constexpr std::uint64_t secondsPerDay = 86'400;
constexpr std::uint64_t secondsPerHour = 3'600;

// Appends `mark` and a number of at least `digits` digits.
void append(std::string& text, std::string_view mark, std::uint64_t number, std::size_t digits) {
    const std::string shown = std::to_string(number);
    text += mark;
    text.append(digits - std::min(digits, shown.size()), '0');
    text += shown;
}

std::string dateText(std::uint64_t days) {
    constexpr std::chrono::sys_days start = std::chrono::January / 1 / 1601;
    // By cycles of the calendar, since std::chrono::year ends at 32767.
    constexpr std::uint64_t daysPerCycle = 146'097;
    constexpr std::uint64_t yearsPerCycle = 400;
    const std::chrono::year_month_day date =
        start + std::chrono::days(static_cast<int>(days % daysPerCycle));
    const std::uint64_t year = static_cast<std::uint64_t>(static_cast<int>(date.year())) +
                               days / daysPerCycle * yearsPerCycle;
    std::string text;
    append(text, "", year, 4);
    append(text, "-", static_cast<unsigned>(date.month()), 2);
    append(text, "-", static_cast<unsigned>(date.day()), 2);
    return text;
}

} // namespace

std::string fileTimeText(std::uint64_t units) {
    const std::uint64_t seconds = units / unitsPerSecond;
    const std::uint64_t inDay = seconds % secondsPerDay;
    std::string text = dateText(seconds / secondsPerDay);
    append(text, "T", inDay / secondsPerHour, 2);
    append(text, ":", inDay / 60 % 60, 2);
    append(text, ":", inDay % 60, 2);
    if (const std::uint64_t fraction = units % unitsPerSecond; fraction != 0) {
        append(text, ".", fraction, fractionDigits);
        text.erase(text.find_last_not_of('0') + 1);
    }
    text += 'Z';
    return text;
}

std::string dayText(std::uint32_t minutes) {
    return dateText(minutes / minutesPerDay);
}

std::string minuteText(std::uint32_t minutes) {
    const std::uint32_t inDay = minutes % minutesPerDay;
    std::string text = dayText(minutes);
    append(text, "T", inDay / 60, 2);
    append(text, ":", inDay % 60, 2);
    return text;
}

} // namespace olmkit
