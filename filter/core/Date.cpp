#include "filter/core/Date.h"

#include <cmath>
#include <limits>

#include "filter/core/NumberReader.h"

namespace qor {

namespace {

constexpr double julianOf1970 = 2440587.5;
constexpr int64_t millisecondsPerSecond = 1000;
constexpr int64_t millisecondsPerMinute = 60 * millisecondsPerSecond;
constexpr int64_t millisecondsPerHour = 60 * millisecondsPerMinute;
constexpr int64_t millisecondsPerDay = 24 * millisecondsPerHour;

// The calendar repeats after 400 years; a cycle that starts in March has its leap day at its end.
constexpr int64_t daysPerCycle = 146097;
constexpr int64_t daysFromMarchOf0To1970 = 719468;

constexpr int64_t divideDown(int64_t number, int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

// The remainder of divideDown(): from 0 to below the divisor.
constexpr int64_t remainderOf(int64_t number, int64_t divisor) {
    const int64_t remainder = number % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

// Returns the days since 1970-01-01. `month` is 1 to 12, `day` may be any number.
constexpr int64_t daysOfDate(int64_t year, int64_t month, int64_t day) {
    const int64_t marchYear = month <= 2 ? year - 1 : year;
    const int64_t cycle = divideDown(marchYear, 400);
    const int64_t yearOfCycle = remainderOf(marchYear, 400);
    const int64_t marchMonth = month > 2 ? month - 3 : month + 9;
    const int64_t dayOfYear = (153 * marchMonth + 2) / 5 + day - 1;
    const int64_t dayOfCycle = yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear;
    return cycle * daysPerCycle + dayOfCycle - daysFromMarchOf0To1970;
}
static_assert(daysOfDate(1970, 1, 1) == 0 && daysOfDate(2000, 3, 1) == 11017);

// The reverse of daysOfDate().
void setDate(int64_t days, _SYSTEMTIME& fields) {
    const int64_t shifted = days + daysFromMarchOf0To1970;
    const int64_t cycle = divideDown(shifted, daysPerCycle);
    const int64_t dayOfCycle = remainderOf(shifted, daysPerCycle);
    const int64_t yearOfCycle =
        (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
    const int64_t dayOfYear =
        dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
    const int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const int64_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    fields.wYear = static_cast<uint16_t>(cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0));
    fields.wMonth = static_cast<uint16_t>(month);
    fields.wDay = static_cast<uint16_t>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
}

bool isLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(int year, int month) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : lengths[month - 1];
}

// Reads the fields of one text. Each function returns whether it found what it reads, and then the
// position is after it.
class MomentReader {
public:
    MomentReader(const uint16_t* text, const uint16_t* textEnd) : position(text), end(textEnd) {}

    bool readMoment() {
        if (!readDigits(4, year)) {
            return false;
        }
        const bool isSpaced = take('-');
        if (!readDigits(2, month) || (isSpaced && !take('-')) || !readDigits(2, day)) {
            return false;
        }
        const bool isTimed = take('T') || (isSpaced && take(' '));
        if (isTimed && !(isSpaced ? readSpacedTime() : readCompactTime())) {
            return false;
        }
        if ((isTimed || isSpaced) && position != end && !readZone()) {
            return false;
        }
        return position == end && isReal();
    }

    double julian() const {
        return Date::calendarDateToJulian(year, month, day, hour, minute - zoneMinutes, second,
                                          millisecond);
    }

private:
    bool take(char unit) {
        if (position == end || *position != static_cast<uint16_t>(unit)) {
            return false;
        }
        ++position;
        return true;
    }

    bool isDigit() const { return position != end && *position >= '0' && *position <= '9'; }

    bool readDigits(int count, int& number) {
        number = 0;
        for (; count > 0; --count, ++position) {
            if (!isDigit()) {
                return false;
            }
            number = number * 10 + (*position - '0');
        }
        return true;
    }

    bool readSpacedTime() {
        if (!readDigits(2, hour) || !take(':') || !readDigits(2, minute)) {
            return false;
        }
        return !take(':') || (readDigits(2, second) && readFraction());
    }

    bool readCompactTime() {
        return readDigits(2, hour) && readDigits(2, minute) && readDigits(2, second) &&
               readFraction();
    }

    // A fraction may be missing; a separator without a digit is an error.
    bool readFraction() {
        if (!take('.') && !take(',')) {
            return true;
        }
        if (!isDigit()) {
            return false;
        }
        for (int weight = 100; isDigit(); weight /= 10, ++position) {
            millisecond += weight * (*position - '0');
        }
        return true;
    }

    bool readZone() {
        if (take('Z')) {
            return true;
        }
        const bool isWest = take('-');
        int hours = 0;
        int minutes = 0;
        if ((!isWest && !take('+')) || !readDigits(2, hours)) {
            return false;
        }
        if (position != end) {
            take(':');
            if (!readDigits(2, minutes)) {
                return false;
            }
        }
        zoneMinutes = (isWest ? -1 : 1) * (hours * 60 + minutes);
        return hours <= 23 && minutes <= 59;
    }

    bool isReal() const {
        if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) {
            return false;
        }
        const bool isEndOfDay = hour == 24 && minute == 0 && second == 0 && millisecond == 0;
        return (hour <= 23 || isEndOfDay) && minute <= 59 && second <= 60;
    }

    const uint16_t* position;
    const uint16_t* end;
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    int zoneMinutes = 0; // to subtract from the time for universal time
};

} // namespace

int64_t Date::getTime() const {
    constexpr double limit = 9223372036854775808.0;
    const double milliseconds =
        (julianDate - julianOf1970) * static_cast<double>(millisecondsPerDay);
    if (std::isnan(milliseconds)) {
        return 0;
    }
    if (milliseconds >= limit) {
        return std::numeric_limits<int64_t>::max();
    }
    if (milliseconds <= -limit) {
        return std::numeric_limits<int64_t>::min();
    }
    return std::llround(milliseconds);
}

double Date::iso8601ToJulian(const uint16_t* text) {
    constexpr uint16_t nothing = 0;
    const uint16_t* begin = text != nullptr ? text : &nothing;
    while (isWhiteSpace(*begin)) {
        ++begin;
    }
    const uint16_t* end = begin;
    while (*end != 0) {
        ++end;
    }
    while (end != begin && isWhiteSpace(end[-1])) {
        --end;
    }
    MomentReader reader(begin, end);
    return reader.readMoment() ? reader.julian() : calendarDateToJulian(1601, 1, 1, 0, 0, 1, 0);
}

double Date::calendarDateToJulian(int year, int month, int day, int hour, int minute, int second,
                                  int millisecond) {
    const int64_t monthIndex = static_cast<int64_t>(month) - 1;
    const int64_t time = hour * millisecondsPerHour + minute * millisecondsPerMinute +
                         second * millisecondsPerSecond + millisecond;
    const int64_t days =
        daysOfDate(year + divideDown(monthIndex, 12), remainderOf(monthIndex, 12) + 1, day) +
        divideDown(time, millisecondsPerDay);

    // Whole days and the time of day are added last, so that only this sum is rounded.
    const auto timeOfDay = static_cast<double>(remainderOf(time, millisecondsPerDay));
    return julianOf1970 + static_cast<double>(days) +
           timeOfDay / static_cast<double>(millisecondsPerDay);
}

void Date::julianToSystemTime(double julian, _SYSTEMTIME& fields) {
    const int64_t milliseconds = Date(julian).getTime();
    const int64_t days = divideDown(milliseconds, millisecondsPerDay);
    const int64_t time = remainderOf(milliseconds, millisecondsPerDay);
    setDate(days, fields);
    fields.wDayOfWeek = static_cast<uint16_t>(remainderOf(days + 4, 7));
    fields.wHour = static_cast<uint16_t>(time / millisecondsPerHour);
    fields.wMinute = static_cast<uint16_t>(time / millisecondsPerMinute % 60);
    fields.wSecond = static_cast<uint16_t>(time / millisecondsPerSecond % 60);
    fields.wMilliseconds = static_cast<uint16_t>(time % millisecondsPerSecond);
}

} // namespace qor
