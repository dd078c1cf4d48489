#ifndef OLMKIT_CLI_TERMINAL_OUTPUT_H
#define OLMKIT_CLI_TERMINAL_OUTPUT_H

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "cli/terminal/TerminalOptions.h"

namespace olmkit {

// Buffered text for one file descriptor, which is borrowed.
//
// What is written goes out in whole records only, so a run that is cut off leaves whole lines: the
// caller appends to buffer() and ends each record with endRecord(). The first record goes out at
// once, later ones when there are enough or the last ones are a while ago.
class Output {
public:
    explicit Output(int descriptor);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() = default;

    // Sets what is called when nobody reads the output any more (a closed pipe). It may end the
    // process; when it returns, the output is failed() and isClosed().
    void whenClosed(std::function<void()> action) { closedAction = std::move(action); }

    std::string& buffer() { return pending; }

    // False when the output has failed.
    bool endRecord();

    // Writes what is pending. False when the output has failed.
    bool flush();

    bool failed() const { return error != 0; }
    bool isClosed() const;
    // The errno of the failure, 0 for none.
    int errorNumber() const { return error; }

    // Columns of the terminal behind the output, 0 when it is none.
    unsigned terminalWidth() const;

    // Whether text may have control sequences for bold type and colours; by default on a terminal.
    bool isStyled() const;
    void setColor(ColorMode mode) { color = mode; }

private:
    int descriptor;
    std::function<void()> closedAction;
    std::string pending;
    std::chrono::steady_clock::time_point lastFlush;
    bool isFirstRecord = true;
    int error = 0;
    ColorMode color = ColorMode::Auto;
};

} // namespace olmkit

#endif
