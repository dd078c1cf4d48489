#include "cli/rows/Moment.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "cli/rows/ItemRow.h"

namespace olmkit {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year_month_day;

// Takes the parts of a date off the front of a text.
template <typename Unit> class DateReader {
public:
    explicit DateReader(std::basic_string_view<Unit> text) : rest(text) {}

    bool isAtEnd() const { return rest.empty(); }

    bool startsWithDigit() const { return !rest.empty() && isDigit(rest.front()); }

    bool take(char expected) {
        if (rest.empty() || rest.front() != static_cast<Unit>(expected)) {
            return false;
        }
        rest.remove_prefix(1);
        return true;
    }

    // Takes a number of exactly `digits` digits. Returns whether there was one within the bounds.
    bool takeNumber(unsigned digits, int& number, int min, int max) {
        if (rest.size() < digits) {
            return false;
        }
        number = 0;
        for (unsigned place = 0; place < digits; ++place) {
            if (!isDigit(rest[place])) {
                return false;
            }
            number = number * 10 + (rest[place] - '0');
        }
        rest.remove_prefix(digits);
        return number >= min && number <= max;
    }

    // Takes "." or "," and at least one digit, if there is a fraction. Digits after the third are
    // ignored.
    bool takeFraction(milliseconds& fraction) {
        if (!take('.') && !take(',')) {
            return true;
        }
        if (!startsWithDigit()) {
            return false;
        }
        int scale = 100;
        for (; startsWithDigit(); rest.remove_prefix(1)) {
            fraction += milliseconds((rest.front() - '0') * scale);
            scale /= 10;
        }
        return true;
    }

private:
    static bool isDigit(Unit unit) { return unit >= '0' && unit <= '9'; }

    std::basic_string_view<Unit> rest;
};

constexpr int maxYear = 9999;

std::optional<Moment> startOf(int year, int month, int day) {
    const year_month_day date{std::chrono::year(year), std::chrono::month(unsigned(month)),
                              std::chrono::day(unsigned(day))};
    if (!date.ok()) {
        return std::nullopt;
    }
    return Moment(std::chrono::sys_days(date));
}

// Takes hh:mm[:ss[.f...]], or hhmmss[.f...] when compact, and adds it to `moment`.
bool takeTime(DateReader<char16_t>& text, bool isCompact, Moment& moment) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    milliseconds fraction{0};
    if (!text.takeNumber(2, hour, 0, 24) || !(isCompact || text.take(':')) ||
        !text.takeNumber(2, minute, 0, 59)) {
        return false;
    }
    // Second 60 is a leap second.
    if ((isCompact || text.take(':')) &&
        !(text.takeNumber(2, second, 0, 60) && text.takeFraction(fraction))) {
        return false;
    }
    moment += hours(hour) + minutes(minute) + seconds(second) + fraction;
    return hour < 24 || (minute == 0 && second == 0 && fraction.count() == 0);
}

// Takes Z, +hh, +hhmm or +hh:mm, likewise with "-", or nothing, and applies it to `moment`.
bool takeZone(DateReader<char16_t>& text, Moment& moment) {
    if (text.isAtEnd() || text.take('Z')) {
        return true;
    }
    const bool isWest = text.take('-');
    int hour = 0;
    int minute = 0;
    if ((!isWest && !text.take('+')) || !text.takeNumber(2, hour, 0, 23)) {
        return false;
    }
    if ((text.take(':') || !text.isAtEnd()) && !text.takeNumber(2, minute, 0, 59)) {
        return false;
    }
    const auto offset = hours(hour) + minutes(minute);
    moment += isWest ? offset : -offset;
    return true;
}

std::u16string_view trimmed(std::u16string_view text) {
    constexpr std::u16string_view blanks = u" \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace

std::optional<Period> readPeriod(std::string_view text) {
    DateReader<char> reader(text);
    int year = 0;
    int month = 1;
    int day = 1;
    if (!reader.takeNumber(4, year, 1, maxYear)) {
        return std::nullopt;
    }
    if (reader.isAtEnd()) {
        return Period{*startOf(year, 1, 1), *startOf(year + 1, 1, 1)};
    }
    if (!reader.take('-') || !reader.takeNumber(2, month, 1, 12)) {
        return std::nullopt;
    }
    if (reader.isAtEnd()) {
        const bool isLast = month == 12;
        return Period{*startOf(year, month, 1),
                      *startOf(isLast ? year + 1 : year, isLast ? 1 : month + 1, 1)};
    }
    if (!reader.take('-') || !reader.takeNumber(2, day, 1, 31)) {
        return std::nullopt;
    }
    const std::optional<Moment> start = startOf(year, month, day);
    if (!start || reader.isAtEnd()) {
        return start ? std::optional(Period{*start, *start + days(1)}) : std::nullopt;
    }

    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!reader.take('T') || !reader.takeNumber(2, hour, 0, 23) || !reader.take(':') ||
        !reader.takeNumber(2, minute, 0, 59)) {
        return std::nullopt;
    }
    const bool hasSeconds = reader.take(':');
    if (hasSeconds && !reader.takeNumber(2, second, 0, 59)) {
        return std::nullopt;
    }
    reader.take('Z');
    if (!reader.isAtEnd()) {
        return std::nullopt;
    }
    const Moment moment = *start + hours(hour) + minutes(minute) + seconds(second);
    return Period{moment, moment + (hasSeconds ? seconds(1) : seconds(60))};
}

std::optional<Moment> readMoment(std::u16string_view text) {
    DateReader<char16_t> reader(trimmed(text));
    int year = 0;
    int month = 0;
    int day = 0;
    if (!reader.takeNumber(4, year, 1, maxYear)) {
        return std::nullopt;
    }
    const bool isCompact = !reader.take('-');
    if (!reader.takeNumber(2, month, 1, 12) || !(isCompact || reader.take('-')) ||
        !reader.takeNumber(2, day, 1, 31)) {
        return std::nullopt;
    }
    std::optional<Moment> moment = startOf(year, month, day);
    if (!moment) {
        return std::nullopt;
    }
    const bool hasTime = reader.take('T') || (!isCompact && reader.take(' '));
    if (hasTime && !takeTime(reader, isCompact, *moment)) {
        return std::nullopt;
    }
    // Digits and a zone without a time would be a number, not a date.
    const bool mayHaveZone = hasTime || !isCompact;
    if ((mayHaveZone && !takeZone(reader, *moment)) || !reader.isAtEnd()) {
        return std::nullopt;
    }
    return moment;
}

std::string momentText(Moment moment) {
    const auto day = std::chrono::floor<days>(moment);
    const year_month_day date(day);
    const std::chrono::hh_mm_ss time(std::chrono::floor<seconds>(moment - day));
    std::array<char, 32> shown = {};
    const int size =
        std::snprintf(shown.data(), shown.size(), "%04d-%02u-%02uT%02d:%02d:%02d", int(date.year()),
                      unsigned(date.month()), unsigned(date.day()), int(time.hours().count()),
                      int(time.minutes().count()), int(time.seconds().count()));
    return {shown.data(), static_cast<std::size_t>(size)};
}

std::string shortDate(const std::string& text) {
    const auto moment = readMoment(std::u16string(text.begin(), text.end()));
    return moment ? momentText(*moment) : text;
}

std::optional<Moment> momentOf(const olmhost::Row& row) {
    const std::u16string_view text = dateOf(row);
    return text.empty() ? std::nullopt : readMoment(text);
}

} // namespace olmkit
