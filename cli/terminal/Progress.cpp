#include "cli/terminal/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <ctime>

#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Style.h"
#include "cli/terminal/Terminal.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// Seconds.
constexpr double barDelay = 0.3; // a run that ends sooner shows no bar
constexpr double barPause = 0.1;
constexpr double jsonPause = 0.25;
constexpr double rateMemory = 3; // older values hardly count

// Exact to some milliseconds, and read in a few nanoseconds.
double secondsNow() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

} // namespace

ProgressMode Progress::modeOf(const TerminalOptions& options) {
    if (options.progress != ProgressMode::Auto) {
        return options.progress;
    }
    return options.loudness != Loudness::Quiet && isSmartTerminal(STDERR_FILENO)
               ? ProgressMode::Bar
               : ProgressMode::None;
}

Progress::Progress(Messages& messages, const std::string& label)
    : messages(messages), mode(modeOf(messages.options())), start(secondsNow()),
      nextDraw(start + (mode == ProgressMode::Json ? jsonPause : barDelay)), lastRateTime(start) {
    appendPrintable(this->label, label);
    if (mode == ProgressMode::Bar) {
        messages.beforeEachMessage([this] { hide(); });
    }
}

Progress::~Progress() {
    finish();
    messages.beforeEachMessage(nullptr);
}

void Progress::update(std::uint64_t done, std::uint64_t total, std::uint64_t bytes,
                      std::uint64_t failed, double share) {
    if (mode == ProgressMode::None) {
        return;
    }
    report.done = done;
    report.total = total;
    report.bytes = bytes;
    report.failed = failed;
    report.share = share;
    if (const double now = secondsNow(); now >= nextDraw) {
        draw(now);
    }
}

void Progress::draw(double now) {
    report.seconds = now - start;
    smoothRate(now);
    if (mode == ProgressMode::Json) {
        messages.show(progressJson(report));
        nextDraw = now + jsonPause;
        return;
    }
    // Read each time, since the terminal's width may change. The last column stays free: a cursor
    // after it would be on the next line.
    unsigned width = terminalWidth(STDERR_FILENO);
    width = (width == 0 ? defaultWidth : width) - 1;
    Interrupt::setLineUnfinished(true);
    messages.show(std::string(style::emptyLine) + progressBar(report, label, width));
    isShown = true;
    nextDraw = now + barPause;
}

void Progress::smoothRate(double now) {
    const double elapsed = now - lastRateTime;
    if (elapsed <= 0) {
        return;
    }
    const double latest =
        static_cast<double>(report.done - std::min(report.done, lastRateDone)) / elapsed;
    const bool isFirst = lastRateTime == start;
    report.rate += (latest - report.rate) * (isFirst ? 1 : 1 - std::exp(-elapsed / rateMemory));
    lastRateTime = now;
    lastRateDone = report.done;
}

void Progress::hide() {
    if (isShown) {
        messages.show(style::emptyLine);
        isShown = false;
        Interrupt::setLineUnfinished(false);
    }
}

void Progress::finish() {
    hide();
    if (mode == ProgressMode::Json) {
        // The last line has the rate of the whole run.
        report.isFinished = true;
        report.seconds = secondsNow() - start;
        report.rate = report.seconds > 0 ? static_cast<double>(report.done) / report.seconds : 0;
        messages.show(progressJson(report));
    }
    mode = ProgressMode::None;
}

} // namespace olmkit
