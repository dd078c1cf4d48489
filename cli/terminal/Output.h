#ifndef OLMKIT_CLI_TERMINAL_OUTPUT_H
#define OLMKIT_CLI_TERMINAL_OUTPUT_H

#include <chrono>
#include <string>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/TerminalOptions.h"

namespace olmkit {

// Buffered text for a file descriptor, which is borrowed.
//
// Only whole records are written, so an interrupted run leaves whole lines: the caller appends to
// buffer() and ends each record with endRecord(). The first record is written at once, later ones
// when there are enough or some time has passed.
class Output {
public:
    explicit Output(int descriptor);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() = default;

    // Makes a closed pipe end the process at once, with ExitCode::Done: for a run that has nothing
    // left to do or to undo when its output is no longer read.
    void endProcessWhenClosed() { endsProcess = true; }

    std::string& buffer() { return pending; }

    // Returns false when the output has failed.
    bool endRecord();

    // Writes the buffer. Returns false when the output has failed.
    bool flush();

    // Writes the buffer of standard output at the end of a run, and returns `code`; when the output
    // has failed, prints a message and returns OutputFailed. A closed pipe is not a failure.
    ExitCode finish(ExitCode code, Messages& messages);

    bool failed() const { return error != 0; }
    // Returns the errno value of the failure, 0 for none.
    int errorNumber() const { return error; }

    // Returns the width in columns of the terminal, 0 when the output is not a terminal.
    unsigned terminalWidth() const;

    // Returns whether text may have control sequences for bold type and colours; by default only on
    // a terminal.
    bool isStyled() const;
    void setColor(ColorMode mode) { color = mode; }

private:
    bool isClosed() const;

    int descriptor;
    bool endsProcess = false;
    std::string pending;
    std::chrono::steady_clock::time_point lastFlush;
    bool isFirstRecord = true;
    int error = 0;
    ColorMode color = ColorMode::Auto;
};

} // namespace olmkit

#endif
