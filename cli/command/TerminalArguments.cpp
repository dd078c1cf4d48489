#include <map>

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

// Fixed texts for one option, and what each means. Set as soon as it is read, so that what is
// wrong behind it is told as the option wants it.
template <typename Value>
void addChoice(CLI::App& app, const std::string& name, Value& value,
               const std::map<std::string, Value>& values, const std::string& description) {
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const auto& [text, meaning] : values) {
        names.push_back(text);
    }
    app.add_option_function<std::string>(
           name, [&value, values](const std::string& text) { value = values.at(text); },
           description)
        ->type_name("WHEN")
        ->check(CLI::IsMember(names))
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->trigger_on_parse();
}

} // namespace

void addTerminal(CLI::App& app, TerminalOptions& options) {
    const auto setLoudness = [&options](Loudness loudness) {
        return [&options, loudness] { options.loudness = loudness; };
    };
    CLI::Option* quiet =
        app.add_flag_callback("-q,--quiet", setLoudness(Loudness::Quiet),
                              "Tell errors alone: no summary, no warnings, no progress bar");
    app.add_flag_callback("-v,--verbose", setLoudness(Loudness::Verbose),
                          "Also tell each file as it is written")
        ->excludes(quiet);
    addChoice<ColorMode>(
        app, "--color", options.color,
        {{"always", ColorMode::Always}, {"auto", ColorMode::Auto}, {"never", ColorMode::Never}},
        "Whether to colour text; auto: on terminals, unless NO_COLOR is set "
        "[auto]");
    addChoice<ProgressMode>(app, "--progress", options.progress,
                            {{"auto", ProgressMode::Auto},
                             {"bar", ProgressMode::Bar},
                             {"json", ProgressMode::Json},
                             {"none", ProgressMode::None}},
                            "How to show on standard error how far a long run is; auto: a bar on "
                            "terminals; json: one object a line, for programs [auto]");
}

} // namespace olmkit
