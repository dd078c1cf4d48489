#ifndef OLMKIT_FILTER_CORE_DATE_H
#define OLMKIT_FILTER_CORE_DATE_H

#include <cstdint>

#include "filter/core/Object.h"
#include "filter/core/_SYSTEMTIME.h"

namespace qor {

inline constexpr int32_t minutesPerHour = 60;

// A moment as a Julian date: days and fractions of days since noon of 24 November 4714 BC in the
// proleptic Gregorian calendar, in universal time. Exact to the millisecond up to the year 9999.
class Date : public Object {
public:
    explicit Date(double julian) : julianDate(julian) {}

    // Returns milliseconds since 1970-01-01T00:00:00Z, rounded to the nearest. A date out of the
    // range of 64 bits returns the end of that range, and NaN returns 0.
    int64_t getTime() const;

    double julian() const { return julianDate; }

    // Returns the Julian date of terminated ISO 8601 text, ignoring white space around it:
    // YYYY-MM-DD, then optionally "T" or a space and hh:mm, hh:mm:ss or hh:mm:ss with a fraction
    // after "." or ","; or YYYYMMDD, then optionally "T" and hhmmss with the same fraction. A zone
    // may follow: "Z", +hh:mm, +hhmm or +hh (or "-"), except after YYYYMMDD alone. Without a zone
    // the time is universal. Any other text, including a day that does not exist, and null return
    // the date for "no date": 1601-01-01T00:00:01Z, which as a time property is exactly 0.
    static double iso8601ToJulian(const uint16_t* text);

    // Returns the Julian date of a date in the proleptic Gregorian calendar, which has a year 0.
    // Numbers out of range carry over: month 13 is the next January, day 0 the last day of the
    // previous month.
    static double calendarDateToJulian(int year, int month, int day, int hour, int minute,
                                       int second, int millisecond);

    // Splits the moment that getTime() returns into its fields, so that both always agree. A year
    // is cut to 16 bits.
    static void julianToSystemTime(double julian, _SYSTEMTIME& fields);

private:
    double julianDate;
};

} // namespace qor

#endif
