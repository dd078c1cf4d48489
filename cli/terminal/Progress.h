#ifndef OLMKIT_CLI_TERMINAL_PROGRESS_H
#define OLMKIT_CLI_TERMINAL_PROGRESS_H

#include <cstdint>
#include <string>

#include "cli/terminal/Messages.h"
#include "cli/terminal/ProgressText.h"

namespace olmkit {

// Shows the progress of a run on standard error: as a bar on a terminal, as lines of JSON, or not
// at all, as the options of `messages` say. A message clears the bar, and the next update draws it
// again. Only one may exist at a time, used by the thread that prints messages.
class Progress {
public:
    // `messages` is borrowed and must outlive this object. `label` is printed before the bar; it
    // may be any text.
    Progress(Messages& messages, const std::string& label);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // Takes new figures; may be called often, since it draws only from time to time. `total` is 0
    // while it is unknown; then `share`, from 0 to 1, says how much of the run is done. `done`
    // includes the failed ones.
    void update(std::uint64_t done, std::uint64_t total, std::uint64_t bytes, std::uint64_t failed,
                double share = 0);

    // Clears the bar, or prints the last line of JSON. Nothing is shown after that.
    void finish();

private:
    static ProgressMode modeOf(const TerminalOptions& options);
    void draw(double now);
    void smoothRate(double now);
    void hide();

    Messages& messages;
    std::string label;
    ProgressMode mode;
    ProgressReport report;
    double start;
    double nextDraw;
    double lastRateTime;
    std::uint64_t lastRateDone = 0;
    bool isShown = false;
};

} // namespace olmkit

#endif
