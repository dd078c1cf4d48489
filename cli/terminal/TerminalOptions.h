#ifndef OLMKIT_CLI_TERMINAL_TERMINALOPTIONS_H
#define OLMKIT_CLI_TERMINAL_TERMINALOPTIONS_H

namespace olmkit {

enum class Loudness {
    Quiet, // errors only
    Normal,
    Verbose,
};

enum class ColorMode { Auto, Always, Never };

enum class ProgressMode {
    Auto, // a bar on a terminal that obeys control sequences, otherwise nothing
    Bar,
    Json,
    None,
};

// How the program prints, whichever command it runs.
struct TerminalOptions {
    Loudness loudness = Loudness::Normal;
    ColorMode color = ColorMode::Auto;
    ProgressMode progress = ProgressMode::Auto;
};

} // namespace olmkit

#endif
