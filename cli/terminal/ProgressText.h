#ifndef OLMKIT_CLI_TERMINAL_PROGRESSTEXT_H
#define OLMKIT_CLI_TERMINAL_PROGRESSTEXT_H

#include <cstdint>
#include <optional>
#include <string>

namespace olmkit {

// The progress of a run.
struct ProgressReport {
    std::uint64_t done = 0;  // failed ones included
    std::uint64_t total = 0; // 0 while it is unknown
    double share = 0;        // the part that is done, from 0 to 1; 0 while it is unknown too
    std::uint64_t bytes = 0; // written so far
    std::uint64_t failed = 0;
    double seconds = 0; // since the start
    double rate = 0;    // done per second, lately
    bool isFinished = false;

    // Returns nothing while it is unknown.
    std::optional<double> secondsLeft() const;

    // Returns the part that is done, from 0 to 1: by `total` when it is known, otherwise `share`.
    // Returns nothing while both are unknown.
    std::optional<double> passed() const;
};

// Returns a line without a line feed, of at most `width` terminal cells. `label` is printable
// UTF-8; it is left out when there is no room for it.
std::string progressBar(const ProgressReport& report, const std::string& label, unsigned width);

// Returns one JSON object and a line feed.
std::string progressJson(const ProgressReport& report);

} // namespace olmkit

#endif
