#ifndef OLMKIT_CLI_TERMINAL_PROGRESS_H
#define OLMKIT_CLI_TERMINAL_PROGRESS_H

#include <cstdint>
#include <string>

#include "cli/terminal/Messages.h"
#include "cli/terminal/ProgressText.h"

namespace olmkit {

// Shows on standard error how far a run is: a bar that comes and goes on a terminal, or lines of
// JSON, or nothing, as the options of `messages` say. Messages told in the meantime take the bar
// away; it is back with the next update. One at a time, used by the thread that tells messages.
class Progress {
public:
    // `messages` is borrowed. `label` stands ahead of the bar; any text.
    Progress(Messages& messages, const std::string& label);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // To be called as often as there is something new; what can't be seen yet costs next to
    // nothing. `total` is 0 while it isn't known; `share` of the whole way, from 0 to 1, serves in
    // its place. `done` counts the failed ones too.
    void update(std::uint64_t done, std::uint64_t total, std::uint64_t bytes, std::uint64_t failed,
                double share = 0);

    // Takes the bar away, or tells the last line. Nothing is shown after that.
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
