#include "cli/command/HelpFormatter.h"

#include <vector>

#include "cli/manual/Outline.h"

namespace olmkit {

HelpFormatter::HelpFormatter() {
    label("Positionals", "Arguments");
    label("SUBCOMMAND", "COMMAND");
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    std::string footer = Formatter::make_footer(app);
    const CLI::App* parent = app->get_parent();
    if (parent == nullptr) {
        return footer;
    }
    const std::vector<const CLI::Option*> shared =
        parent->get_options([parent](const CLI::Option* option) {
            return option != parent->get_help_ptr() && !option->get_group().empty() &&
                   option->nonpositional();
        });
    // A group begins with an empty line, which the caller has printed already.
    return shared.empty()
               ? footer
               : make_group("Options of every command", false, shared).substr(1) + "\n" + footer;
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const Parameter parameter = parameterOf(*option);
    const std::string value = valueText(parameter);
    return (value.empty() ? "" : " " + value) + (parameter.isRepeated ? " ..." : "") +
           (parameter.isRequired ? " (required)" : "");
}

} // namespace olmkit
