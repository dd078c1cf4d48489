#ifndef OLMKIT_CLI_TERMINAL_INTERRUPT_H
#define OLMKIT_CLI_TERMINAL_INTERRUPT_H

#include <csignal>
#include <string>

namespace olmkit {

// What SIGINT, SIGTERM and SIGHUP do to the program.
//
// A run that leaves no files is ended at once. A run that writes files is asked to stop, and does
// so between two steps, with a manifest of what is done; if that takes too long, or the signal
// comes again, it is ended at once, and the guarded files are removed. Either way the process ends
// with ExitCode::Interrupted.
//
// Only the main thread takes the signals: start other threads while an Interrupt::Block exists.
class Interrupt {
public:
    // A file that is removed when the process is ended at once. At most `guardCount` may exist.
    class Guard {
    public:
        // Guards the file `name`, of at most 63 bytes, in the folder `directory`, an open
        // descriptor that must outlive the guard.
        Guard(int directory, const std::string& name);
        Guard(Guard&& other) noexcept;
        Guard& operator=(Guard&& other) noexcept;
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        ~Guard();

    private:
        int place; // below 0: guards nothing
    };
    static constexpr int guardCount = 2048;

    // While it exists, its thread and the threads started by it receive no signals.
    class Block {
    public:
        Block();
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        ~Block();

    private:
        sigset_t before = {};
    };

    // While one exists on any thread, the process is not ended at once: a file is created and
    // guarded in one step.
    class Delay {
    public:
        Delay();
        Delay(const Delay&) = delete;
        Delay& operator=(const Delay&) = delete;
        ~Delay();

    private:
        Block block;
    };

    // Makes the signals end the process at once, or first ask the run to stop.
    static void endAtOnce();
    static void askToStop();

    // Returns whether the run has been asked to stop.
    static bool isRequested();

    // Sets whether the terminal shows an unfinished line, which the last message must clear.
    static void setLineUnfinished(bool isUnfinished);
};

} // namespace olmkit

#endif
