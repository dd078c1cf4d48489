#ifndef OLMKIT_CLI_TERMINAL_INTERRUPT_H
#define OLMKIT_CLI_TERMINAL_INTERRUPT_H

#include <csignal>
#include <string>

namespace olmkit {

// What SIGINT, SIGTERM and SIGHUP do to the program.
//
// A run that leaves nothing behind is ended at once. A run that writes files is asked to stop, and
// does so between two steps, with a manifest of what is done; if that takes too long, or the signal
// comes again, it is ended at once, and the files under guard are removed. Either way the process
// ends with the exit code of an interruption.
//
// The signals are the main thread's: others are started while an Interrupt::Block stands.
class Interrupt {
public:
    // A file that goes when the process is ended at once. There may be `guardCount` at a time.
    class Guard {
    public:
        // The file `name` in the folder `directory`, an open descriptor that outlives the guard.
        Guard(int directory, const std::string& name);
        Guard(Guard&& other) noexcept;
        Guard& operator=(Guard&& other) noexcept;
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        ~Guard();

    private:
        int place; // below 0: it guards nothing
    };
    static constexpr int guardCount = 2048;

    // While it stands on a thread, that thread gets no signals, nor do those that it starts.
    class Block {
    public:
        Block();
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        ~Block();

    private:
        sigset_t before = {};
    };

    // While it stands, on whichever thread, the process is not ended at once: a file is made and
    // put under guard in one step.
    class Delay {
    public:
        Delay();
        Delay(const Delay&) = delete;
        Delay& operator=(const Delay&) = delete;
        ~Delay();

    private:
        Block block;
    };

    static void endAtOnce();
    static void askToStop();

    // Whether the run has been asked to stop.
    static bool isRequested();

    // Whether an unfinished line stands on the terminal, which the last message takes away.
    static void setLineStands(bool stands);
};

} // namespace olmkit

#endif
