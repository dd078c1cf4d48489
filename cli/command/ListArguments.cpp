#include <algorithm>
#include <map>
#include <vector>

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* listExamples =
    "Examples:\n"
    "  olmkit list mail.olm\n"
    "  olmkit list mail.olm --kind email --folder '**/Inbox' --since 2019-03\n"
    "  olmkit list mail.olm --subject tide --sort date:desc\n"
    "  olmkit list mail.olm --format csv > items.csv\n"
    "  olmkit list mail.olm --format jsonl --columns index,date,label | head -n 5\n";

std::string columnNames() {
    std::vector<std::string_view> names;
    for (const RowColumn& column : allColumns()) {
        names.emplace_back(column.key);
    }
    return enumerated(names);
}

std::string checkColumn(const std::string& text) {
    return findColumn(text) != nullptr
               ? ""
               : "there is no column '" + text + "'; the columns are " + columnNames();
}

// A column's name, and whether ":desc" stands behind it.
std::string checkOrder(const std::string& text) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos && text.substr(colon) != ":desc") {
        return "'" + text + "' is no order; give a column's name, with :desc for the other way";
    }
    return checkColumn(text.substr(0, colon));
}

void addColumns(CLI::App& list, ListOptions& options) {
    list.add_option_function<std::vector<std::string>>(
            "--columns",
            [&options](const std::vector<std::string>& names) {
                for (const std::string& name : names) {
                    const RowColumn* column = findColumn(name);
                    if (std::ranges::find(options.columns, column) != options.columns.end()) {
                        throw CLI::ValidationError("--columns", "'" + name + "' is there twice");
                    }
                    options.columns.push_back(column);
                }
            },
            "What to show, in that order, with commas between: " + columnNames() +
                ". date, label and folder are what the table shows as DATE, NAME and FOLDER")
        ->type_name("COLUMN,...")
        ->allow_extra_args(false)
        ->delimiter(',')
        ->check(CLI::Validator(checkColumn, ""));
}

void addOrder(CLI::App& list, ListOptions& options) {
    list.add_option_function<std::string>(
            "--sort",
            [&options](const std::string& text) {
                const std::size_t colon = text.find(':');
                options.order =
                    SortOrder{findColumn(text.substr(0, colon)), colon != std::string::npos};
            },
            "The column to sort by, upwards; all rows wait in memory for the last one")
        ->type_name("COLUMN[:desc]")
        ->check(CLI::Validator(checkOrder, ""));
}

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
    addColumns(*list, options);
    addOrder(*list, options);
    addFilter(*list, options.filter);
    list->footer(listExamples);
}

} // namespace olmkit
