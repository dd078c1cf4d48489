#include "cli/terminal/Interrupt.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cassert>
#include <csignal>
#include <cstring>
#include <ctime>
#include <string_view>
#include <utility>

#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Style.h"

namespace olmkit {

namespace {

// The time that a run has to stop by itself.
constexpr suseconds_t graceMicroseconds = 600'000;

struct GuardedFile {
    std::atomic<bool> isTaken = false;
    std::atomic<bool> isSet = false;
    int directory = -1;
    std::array<char, 64> name = {};
};

std::array<GuardedFile, Interrupt::guardCount> guardedFiles;
std::atomic<bool> isAsked = false;
std::atomic<bool> isEnding = false;
std::atomic<bool> isLineUnfinished = false;
std::atomic<int> delays = 0; // Delay objects that exist
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

// The functions below run in a signal handler: only async-signal-safe calls.

// Other threads may be creating a file at this moment. They start no other one, so this takes no
// longer than a system call, unless the file system hangs.
void waitForDelays() {
    constexpr int maxTries = 100;
    constexpr timespec pause = {0, 1'000'000};
    isEnding = true;
    for (int tries = 0; delays > 0 && tries < maxTries; ++tries) {
        nanosleep(&pause, nullptr);
    }
}

[[noreturn]] void endProcess() {
    waitForDelays();
    for (const GuardedFile& file : guardedFiles) {
        if (file.isSet) {
            unlinkat(file.directory, file.name.data(), 0);
        }
    }
    if (isLineUnfinished) {
        [[maybe_unused]] const ssize_t ignored =
            write(STDERR_FILENO, style::emptyLine.data(), style::emptyLine.size());
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
        // Under nohup, or in a shell's background job, the signal is not for this process.
        if (before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
    action.sa_handler = endAtOnceHandler;
    sigaction(SIGALRM, &action, nullptr);
}

} // namespace

Interrupt::Guard::Guard(int directory, const std::string& name) : place(0) {
    while (guardedFiles[place].isTaken.exchange(true)) {
        ++place;
        assert(place < guardCount);
    }
    GuardedFile& file = guardedFiles[place];
    assert(name.size() < file.name.size());
    file.directory = directory;
    std::memcpy(file.name.data(), name.c_str(), name.size() + 1);
    file.isSet = true;
}

Interrupt::Guard::Guard(Guard&& other) noexcept : place(std::exchange(other.place, -1)) {}

Interrupt::Guard& Interrupt::Guard::operator=(Guard&& other) noexcept {
    std::swap(place, other.place);
    return *this;
}

Interrupt::Guard::~Guard() {
    if (place >= 0) {
        guardedFiles[place].isSet = false;
        guardedFiles[place].isTaken = false;
    }
}

Interrupt::Block::Block() {
    sigset_t blocked = {};
    sigemptyset(&blocked);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGALRM}) {
        sigaddset(&blocked, signal);
    }
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
}

Interrupt::Block::~Block() {
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Interrupt::Delay::Delay() {
    ++delays;
    if (isEnding) {
        --delays;
        for (;;) {
            pause(); // the main thread is ending the process
        }
    }
}

Interrupt::Delay::~Delay() {
    --delays;
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

void Interrupt::setLineUnfinished(bool isUnfinished) {
    isLineUnfinished = isUnfinished;
}

} // namespace olmkit
