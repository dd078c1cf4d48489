#ifndef OLMKIT_CLI_ROWS_MOMENT_H
#define OLMKIT_CLI_ROWS_MOMENT_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "host/session/Row.h"

namespace olmkit {

// A moment in UTC.
using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

// A period that a text names: a year, month, day, minute or second.
struct Period {
    Moment begin;
    Moment end; // the first moment after it
};

// Reads YYYY, YYYY-MM, YYYY-MM-DD, YYYY-MM-DDThh:mm and YYYY-MM-DDThh:mm:ss in UTC, the last two
// with or without "Z". Returns std::nullopt for any other text and for a day or time that doesn't
// exist.
std::optional<Period> readPeriod(std::string_view text);

// Reads a date in the form of archives: YYYY-MM-DD or YYYYMMDD, then optionally a time in the same
// form, with a fraction of a second, then optionally a zone; without one it is UTC. Returns
// std::nullopt for any other text.
std::optional<Moment> readMoment(std::u16string_view text);

// Returns YYYY-MM-DDThh:mm:ss in UTC.
std::string momentText(Moment moment);

// Returns a date that readMoment() reads as YYYY-MM-DDThh:mm:ss in UTC, any other text unchanged.
std::string shortDate(const std::string& text);

// Returns the moment of a row's date, see dateOf(), or std::nullopt when it has none that can be
// read.
std::optional<Moment> momentOf(const olmhost::Row& row);

} // namespace olmkit

#endif
