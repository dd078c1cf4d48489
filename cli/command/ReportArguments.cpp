#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* reportExamples =
    "Examples:\n"
    "  olmkit report mail.olm -o mail.html\n"
    "  olmkit report mail.olm -o inbox.html --folder '**/Inbox' --since 2019\n"
    "\n"
    "The page needs a browser and nothing else: no network, no other file. It appears under its\n"
    "name only when it is whole. The exit code is 1 when something is damaged, encrypted or\n"
    "missing; the page tells what.\n";

std::string checkPage(const std::string& text) {
    if (text == "-") {
        return "a page is not written to standard output; give the name of a file";
    }
    return text.empty() || text.ends_with('/') ? "'" + text + "' is no name of a file" : "";
}

} // namespace

void defineReport(CLI::App& app, ReportOptions& options) {
    CLI::App* report = app.add_subcommand(
        "report",
        "Write one HTML page to look through an archive: folders, items, search, time line");
    addArchive(*report, options.archive);
    report
        ->add_option("-o,--output", options.file,
                     "The page to write; one that is there is replaced")
        ->type_name("FILE")
        ->required()
        ->check(CLI::Validator(checkPage, ""));
    addFilter(*report, options.filter);
    report->footer(reportExamples);
}

} // namespace olmkit
