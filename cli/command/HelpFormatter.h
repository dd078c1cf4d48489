#ifndef OLMKIT_CLI_COMMAND_HELPFORMATTER_H
#define OLMKIT_CLI_COMMAND_HELPFORMATTER_H

#include <string>

#include <CLI/CLI.hpp>

namespace olmkit {

// Help in which a command also shows the options that all commands have, and an option the texts
// that it takes.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();

    // What stands behind the command's own options: the shared ones ahead of the footer.
    std::string make_footer(const CLI::App* app) const override;

    // What stands behind an option's names.
    std::string make_option_opts(const CLI::Option* option) const override;
};

} // namespace olmkit

#endif
