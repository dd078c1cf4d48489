#ifndef OLMKIT_CLI_TERMINAL_PROGRESSTEXT_H
#define OLMKIT_CLI_TERMINAL_PROGRESSTEXT_H

#include <cstdint>
#include <optional>
#include <string>

namespace olmkit {

// How far a run is.
struct ProgressReport {
    std::uint64_t done = 0;  // failed ones included
    std::uint64_t total = 0; // 0 while it isn't known
    double share = 0;        // of the whole way, from 0 to 1; 0 while that isn't known either
    std::uint64_t bytes = 0; // written so far
    std::uint64_t failed = 0;
    double seconds = 0; // since the start
    double rate = 0;    // done in a second, lately
    bool isFinished = false;

    // Nothing while it can't be told.
    std::optional<double> secondsLeft() const;

    // Of the whole way, by the total if that is known. Nothing while it can't be told.
    std::optional<double> passed() const;
};

// A line without its end, at most `width` terminal cells. `label` is printable UTF-8 and is left
// out where there is no room.
std::string progressBar(const ProgressReport& report, const std::string& label, unsigned width);

// One JSON object and the line's end.
std::string progressJson(const ProgressReport& report);

} // namespace olmkit

#endif
