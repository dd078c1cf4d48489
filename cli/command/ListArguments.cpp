#include <map>

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* examples = "Examples:\n"
                                 "  olmkit list mail.olm\n"
                                 "  olmkit list mail.olm --format csv > items.csv\n"
                                 "  olmkit list mail.olm --format jsonl | head -n 5\n";

} // namespace

void defineList(CLI::App& app, ListOptions& options) {
    static const std::map<std::string, RowFormat> formats = {
        {"table", RowFormat::Table}, {"csv", RowFormat::Csv}, {"jsonl", RowFormat::JsonLines}};
    CLI::App* list = app.add_subcommand("list", "List the items of an archive, one row each");
    addArchive(*list, options.archive);
    list->add_option_function<std::string>(
            "--format", [&options](const std::string& name) { options.format = formats.at(name); },
            "table for people; csv or jsonl (one JSON object a line) for programs [table]")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"table", "csv", "jsonl"}));
    list->footer(examples);
}

} // namespace olmkit
