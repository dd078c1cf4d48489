#ifndef OLMKIT_FILTER_CORE_DATE_H
#define OLMKIT_FILTER_CORE_DATE_H

#include <cstdint>

#include "filter/core/Object.h"
#include "filter/core/_SYSTEMTIME.h"

namespace qor {

inline constexpr int32_t minutesPerHour = 60;

// A moment as a Julian date: days, with their fraction, since noon of 24 November 4714 BC in the
// proleptic Gregorian calendar, universal time. Good to the millisecond for the years up to 9999.
class Date : public Object {
public:
    explicit Date(double julian) : julianDate(julian) {}

    // Milliseconds since 1970-01-01T00:00:00Z, to the nearest one. A date out of the range of 64
    // bits gives the end of that range; one that is no number gives 0.
    int64_t getTime() const;

    double julian() const { return julianDate; }

    // Reads terminated text with white space around it ignored: YYYY-MM-DD, then optionally "T" or
    // a space and hh:mm, hh:mm:ss or hh:mm:ss and a fraction behind "." or ","; or YYYYMMDD, then
    // optionally "T" and hhmmss with the same fraction; then optionally "Z", +hh:mm, +hhmm or +hh
    // (or "-"), though not behind YYYYMMDD alone. No zone means universal time. Any other text,
    // also a day that isn't there, and null, give the date that stands for "no date":
    // 1601-01-01T00:00:01Z, from which a time property of exactly 0 is made.
    static double iso8601ToJulian(const uint16_t* text);

    // Takes any numbers and runs on: month 13 is the next January, day 0 the last day of the month
    // before. Years are those of the proleptic Gregorian calendar, with a year 0.
    static double calendarDateToJulian(int year, int month, int day, int hour, int minute,
                                       int second, int millisecond);

    // Splits the moment that getTime() gives, so that fields and milliseconds always agree. Of a
    // year that doesn't fit its field the low 16 bits are kept.
    static void julianToSystemTime(double julian, _SYSTEMTIME& fields);

private:
    double julianDate;
};

} // namespace qor

#endif
