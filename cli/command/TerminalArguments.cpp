#include "cli/command/TerminalArguments.h"

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

void addLoudness(CLI::App& app, TerminalOptions& options) {
    const auto setTo = [&options](Loudness loudness) {
        return [&options, loudness] { options.loudness = loudness; };
    };
    CLI::Option* quiet =
        app.add_flag_callback("-q,--quiet", setTo(Loudness::Quiet),
                              "Print only errors: no summary, no warnings, no progress bar");
    app.add_flag_callback("-v,--verbose", setTo(Loudness::Verbose),
                          "Also print the name of each file that is written")
        ->excludes(quiet);
}

// The last one counts, so that an alias can be overridden. It is set as soon as it is read, so that
// the message about a wrong argument after it follows it.
void countLastOne(CLI::Option* option) {
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)->trigger_on_parse();
}

} // namespace

void addTerminal(CLI::App& app, TerminalOptions& options) {
    addLoudness(app, options);
    countLastOne(
        addChoice<ColorMode>(
            app, "--color", options.color,
            {{"always", ColorMode::Always}, {"auto", ColorMode::Auto}, {"never", ColorMode::Never}},
            "When to colour text; auto: on terminals, unless NO_COLOR is "
            "set [auto]")
            ->type_name("WHEN"));
    countLastOne(addChoice<ProgressMode>(app, "--progress", options.progress,
                                         {{"auto", ProgressMode::Auto},
                                          {"bar", ProgressMode::Bar},
                                          {"json", ProgressMode::Json},
                                          {"none", ProgressMode::None}},
                                         "How to show the progress of a long run on standard "
                                         "error; auto: a bar on terminals; json: one object per "
                                         "line, for programs [auto]")
                     ->type_name("FORM"));
}

} // namespace olmkit
