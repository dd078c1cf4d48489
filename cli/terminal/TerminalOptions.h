#ifndef OLMKIT_CLI_TERMINAL_TERMINALOPTIONS_H
#define OLMKIT_CLI_TERMINAL_TERMINALOPTIONS_H

namespace olmkit {

enum class Loudness {
    Quiet, // errors alone
    Usual,
    Verbose,
};

enum class ColorMode { Auto, Always, Never };

enum class ProgressMode {
    Auto, // a bar on a terminal that can move its cursor, nothing elsewhere
    Bar,
    Json,
    None,
};

// How the program talks, whichever command it runs.
struct TerminalOptions {
    Loudness loudness = Loudness::Usual;
    ColorMode color = ColorMode::Auto;
    ProgressMode progress = ProgressMode::Auto;
};

} // namespace olmkit

#endif
