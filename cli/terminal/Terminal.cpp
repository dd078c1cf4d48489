#include "cli/terminal/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace olmkit {

namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

} // namespace

unsigned terminalWidth(int descriptor) {
    if (isatty(descriptor) == 0) {
        return 0;
    }
    winsize size = {};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return defaultWidth;
    }
    return size.ws_col;
}

bool isSmartTerminal(int descriptor) {
    const std::string_view kind = environment("TERM");
    return isatty(descriptor) != 0 && !kind.empty() && kind != "dumb";
}

bool isColored(ColorMode mode, int descriptor) {
    switch (mode) {
    case ColorMode::Always:
        return true;
    case ColorMode::Never:
        return false;
    case ColorMode::Auto:
        break;
    }
    return environment("NO_COLOR").empty() && isSmartTerminal(descriptor);
}

} // namespace olmkit
