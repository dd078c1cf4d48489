#include "cli/terminal/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "cli/terminal/Terminal.h"

namespace olmkit {

namespace {

constexpr std::size_t enoughBytes = std::size_t{64} << 10;
constexpr std::chrono::milliseconds maxWait{100};

} // namespace

Output::Output(int descriptor)
    : descriptor(descriptor), lastFlush(std::chrono::steady_clock::now()) {
    pending.reserve(2 * enoughBytes);
}

bool Output::endRecord() {
    if (pending.size() >= enoughBytes || isFirstRecord ||
        std::chrono::steady_clock::now() - lastFlush >= maxWait) {
        isFirstRecord = false;
        return flush();
    }
    return error == 0;
}

bool Output::flush() {
    std::string_view rest = pending;
    while (!rest.empty() && error == 0) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            error = errno;
        }
    }
    pending.clear();
    lastFlush = std::chrono::steady_clock::now();
    if (isClosed() && endsProcess) {
        std::_Exit(static_cast<int>(ExitCode::Done));
    }
    return error == 0;
}

ExitCode Output::finish(ExitCode code, Messages& messages) {
    return flush() || isClosed() ? code : messages.outputFailure("standard output", error);
}

bool Output::isClosed() const {
    return error == EPIPE;
}

unsigned Output::terminalWidth() const {
    return olmkit::terminalWidth(descriptor);
}

bool Output::isStyled() const {
    return isColored(color, descriptor);
}

} // namespace olmkit
