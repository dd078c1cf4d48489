#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* verifyExamples =
    "Examples:\n"
    "  olmkit verify messages\n"
    "  olmkit verify messages --strict\n"
    "  olmkit verify messages --json\n"
    "\n"
    "Reads DIR/manifest.jsonl, and of every file that it names the "
    "size and the SHA-256. Each file\n"
    "that differs is a line; the exit code is 1 then.\n";

} // namespace

void defineVerify(CLI::App& app, VerifyOptions& options) {
    CLI::App* verify = app.add_subcommand("verify", "Compare extracted files with their manifest");
    verify->add_option("DIR", options.directory, "The folder that was extracted to")->required();
    verify->add_flag("--strict", options.strict,
                     "A file that the manifest doesn't name is a difference too");
    verify->add_flag("--json", options.json, "One JSON object in place of text");
    verify->footer(verifyExamples);
}

} // namespace olmkit
