#ifndef OLMKIT_CLI_ROWS_MOMENT_H
#define OLMKIT_CLI_ROWS_MOMENT_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "host/session/Row.h"

namespace olmkit {

// A moment in universal time.
using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

// A stretch of time that a text names: a year, a month, a day, a minute, a second.
struct Period {
    Moment begin;
    Moment end; // the first moment behind it
};

// Reads YYYY, YYYY-MM, YYYY-MM-DD, YYYY-MM-DDThh:mm and YYYY-MM-DDThh:mm:ss in universal time, the
// last two with or without "Z". Nothing for any other text, and for a day or time that isn't.
std::optional<Period> readPeriod(std::string_view text);

// Reads a date as archives have them: YYYY-MM-DD or YYYYMMDD, then perhaps a time of the same form,
// with a fraction of a second, then perhaps a zone; without one it is universal time. Nothing for
// any other text.
std::optional<Moment> readMoment(std::u16string_view text);

// A date as readMoment() takes it, as YYYY-MM-DDThh:mm:ss in universal time; any other text as it
// is.
std::string shortDate(const std::string& text);

// The moment of a row's date, see dateOf(). Nothing when the item has none that can be read.
std::optional<Moment> momentOf(const olmhost::Row& row);

} // namespace olmkit

#endif
