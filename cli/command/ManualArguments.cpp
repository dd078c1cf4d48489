#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* manualExamples = "Examples:\n"
                                       "  olmkit man | man -l -\n"
                                       "  olmkit man > olmkit.1\n";

} // namespace

void defineManual(CLI::App& app, ManualOptions& /*options*/) {
    app.add_subcommand("man", "Print the manual page, for man and groff")->footer(manualExamples);
}

} // namespace olmkit
