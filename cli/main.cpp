#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "cli/command/Program.h"

int main(int argc, char** argv) {
    // A write to a closed pipe, or past the largest file size, is an error and not the end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // No output depends on the machine's time zone. Besides, libzip turns every entry's date into
    // local time, and without TZ the C library would look for the zone's file each time.
    setenv("TZ", "UTC0", 1);

    try {
        olmkit::Messages messages;
        olmkit::Output output(STDOUT_FILENO);
        return static_cast<int>(olmkit::runProgram(argc, argv, output, messages));
    } catch (const std::bad_alloc&) {
        std::fputs("olmkit: out of memory; close other programs and try again\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "olmkit: %s\n", error.what());
    }
    return static_cast<int>(olmkit::ExitCode::Unreadable);
}
