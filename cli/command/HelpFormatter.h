#ifndef OLMKIT_CLI_COMMAND_HELPFORMATTER_H
#define OLMKIT_CLI_COMMAND_HELPFORMATTER_H

#include <string>

#include <CLI/CLI.hpp>

namespace olmkit {

// Formats help so that a command also shows the options that every command has, and an option the
// values that it takes.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();

    // Returns what follows the command's own options: the shared ones, then the footer.
    std::string make_footer(const CLI::App* app) const override;

    // Returns what follows an option's names.
    std::string make_option_opts(const CLI::Option* option) const override;
};

} // namespace olmkit

#endif
