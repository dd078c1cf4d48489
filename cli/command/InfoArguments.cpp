#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* infoExamples =
    "Examples:\n"
    "  olmkit info mail.olm\n"
    "  olmkit info mail.olm --check\n"
    "  olmkit info mail.olm --json | jq '.kinds[] | {kind, items}'\n"
    "\n"
    "Dates are in universal time. The exit code is 1 when something is damaged, encrypted or\n"
    "missing.\n";

} // namespace

void defineInfo(CLI::App& app, InfoOptions& options) {
    CLI::App* info = app.add_subcommand(
        "info", "Tell what is in an archive: kinds, folders, dates, sizes, damage");
    addArchive(*info, options.archive);
    info->add_flag("--json", options.isJson, "Print one JSON object, for programs");
    info->add_flag("--check", options.isChecking,
                   "Read every entry to its end, to find what is damaged");
    info->footer(infoExamples);
}

} // namespace olmkit
