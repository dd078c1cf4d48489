#include "cli/terminal/Interrupt.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cassert>
#include <csignal>
#include <cstring>
#include <string_view>

#include "cli/command/ExitCode.h"

namespace olmkit {

namespace {

// Time that a run gets to stop by itself.
constexpr suseconds_t graceMicroseconds = 600'000;

struct GuardedFile {
    std::atomic<bool> isSet = false;
    int directory = -1;
    std::array<char, 64> name = {};
};

std::array<GuardedFile, Interrupt::guardCount> guardedFiles;
std::atomic<bool> isAsked = false;
static_assert(std::atomic<bool>::is_always_lock_free);

// Everything below runs in a signal handler: bare system calls alone.

[[noreturn]] void endProcess() {
    for (const GuardedFile& file : guardedFiles) {
        if (file.isSet) {
            unlinkat(file.directory, file.name.data(), 0);
        }
    }
    constexpr std::string_view text = "olmkit: interrupted\n";
    [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, text.data(), text.size());
    _exit(static_cast<int>(ExitCode::Interrupted));
}

void endAtOnceHandler(int /*signal*/) {
    endProcess();
}

void askToStopHandler(int /*signal*/) {
    if (isAsked.exchange(true)) {
        endProcess();
    }
    const itimerval grace = {{0, 0}, {0, graceMicroseconds}};
    setitimer(ITIMER_REAL, &grace, nullptr);
}

void install(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        // nohup, or a shell's background job: the signal is not for this process.
        if (before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
    action.sa_handler = endAtOnceHandler;
    sigaction(SIGALRM, &action, nullptr);
}

} // namespace

Interrupt::Guard::Guard(int directory, const std::string& name) : place(0) {
    while (place < guardCount && guardedFiles[place].isSet) {
        ++place;
    }
    assert(place < guardCount);
    GuardedFile& file = guardedFiles[place];
    assert(name.size() < file.name.size());
    file.directory = directory;
    std::memcpy(file.name.data(), name.c_str(), name.size() + 1);
    file.isSet = true;
}

Interrupt::Guard::~Guard() {
    guardedFiles[place].isSet = false;
}

Interrupt::Delay::Delay() {
    sigset_t delayed = {};
    sigemptyset(&delayed);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGALRM}) {
        sigaddset(&delayed, signal);
    }
    sigprocmask(SIG_BLOCK, &delayed, &before);
}

Interrupt::Delay::~Delay() {
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

void Interrupt::endAtOnce() {
    install(endAtOnceHandler);
}

void Interrupt::askToStop() {
    install(askToStopHandler);
}

bool Interrupt::isRequested() {
    return isAsked;
}

} // namespace olmkit
