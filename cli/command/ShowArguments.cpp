#include "cli/command/Arguments.h"
#include "cli/command/ItemArguments.h"

namespace olmkit {

namespace {

constexpr const char* showExamples =
    "Examples:\n"
    "  olmkit show mail.olm 7\n"
    "  olmkit show mail.olm 7 --body\n"
    "  olmkit show mail.olm --at 12:1 --json\n"
    "\n"
    "Times are those that the message holds, in universal time. On a terminal, values wrap to its\n"
    "width; elsewhere each is one line, whole.\n";

void addItem(CLI::App& show, ShowOptions& options) {
    CLI::Option* index = show.add_option_function<std::string>(
                                 "N",
                                 [&options](const std::string& text) {
                                     options.index = readNumber<std::uint64_t>(text);
                                 },
                                 "The item's index, as list has it")
                             ->check(CLI::Validator(checkIndex, ""));
    CLI::Option* place =
        show.add_option_function<std::string>(
                "--at", [&options](const std::string& text) { options.place = readPlace(text); },
                "Instead of N: the item's place, by entry and item as list has them")
            ->type_name("ENTRY:ITEM")
            ->check(CLI::Validator(checkPlace, ""));
    index->excludes(place);
    show.callback([&options] {
        if (!options.index.has_value() && !options.place.has_value()) {
            throw CLI::RequiredError("N or --at");
        }
    });
}

void addForms(CLI::App& show, ShowOptions& options) {
    CLI::Option* json = show.add_flag_callback(
        "--json", [&options] { options.form = ShowForm::Json; }, "One JSON object");
    CLI::Option* body = show.add_flag_callback(
        "--body", [&options] { options.form = ShowForm::Body; },
        "The item's text alone: the plain body, otherwise the text of the HTML");
    json->excludes(body);
}

} // namespace

void defineShow(CLI::App& app, ShowOptions& options) {
    CLI::App* show = app.add_subcommand("show", "Show one item: every property of its message");
    addArchive(*show, options.archive);
    addItem(*show, options);
    addForms(*show, options);
    show->footer(showExamples);
}

} // namespace olmkit
