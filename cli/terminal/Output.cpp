#include "cli/terminal/Output.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "cli/terminal/Terminal.h"

namespace olmkit {

namespace {

constexpr std::size_t enough = std::size_t{64} << 10; // bytes
constexpr std::chrono::milliseconds whileAgo{100};

} // namespace

Output::Output(int descriptor)
    : descriptor(descriptor), lastFlush(std::chrono::steady_clock::now()) {
    pending.reserve(2 * enough);
}

bool Output::endRecord() {
    if (pending.size() >= enough || isFirstRecord ||
        std::chrono::steady_clock::now() - lastFlush >= whileAgo) {
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
    if (isClosed() && closedAction) {
        closedAction();
    }
    return error == 0;
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
