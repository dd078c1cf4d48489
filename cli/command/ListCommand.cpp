#include <algorithm>
#include <memory>

#include "cli/command/ArchiveInput.h"
#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/command/FilterArguments.h"
#include "cli/rows/ListOptions.h"
#include "cli/rows/Listing.h"

namespace olmkit {

namespace {

std::string columnNames() {
    std::vector<std::string> names;
    for (const RowColumn& column : allColumns()) {
        names.emplace_back(column.key);
    }
    return enumerated(names, "and");
}

std::string checkColumn(const std::string& text) {
    return findColumn(text) != nullptr
               ? ""
               : "there is no column '" + text + "'; the columns are " + columnNames();
}

// Reads a column's name, with ":desc" after it for the descending order.
SortOrder readOrder(const std::string& text) {
    const std::size_t colon = text.find(':');
    return {findColumn(text.substr(0, colon)), colon != std::string::npos};
}

std::string checkOrder(const std::string& text) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos && text.substr(colon) != ":desc") {
        return "'" + text + "' is not an order; use a column's name, or COLUMN:desc";
    }
    return checkColumn(text.substr(0, colon));
}

// Prints a row for each item in index order, and a message for each entry that can't be read.
class ListCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* list =
            program.add_subcommand("list", "List the items of an archive, one row each");
        addArchive(*list, options.archive);
        addChoice(
            *list, "--format", options.format,
            {{"table", RowFormat::Table}, {"csv", RowFormat::Csv}, {"jsonl", RowFormat::JsonLines}},
            "table for reading; csv or jsonl (one JSON object per line) for programs [table]")
            ->type_name("FORMAT");
        addColumns(*list);
        addOrder(*list);
        addFilter(*list, options.filter);
        list->footer("Examples:\n"
                     "  olmkit list mail.olm\n"
                     "  olmkit list mail.olm --kind email --folder '**/Inbox' --since 2019-03\n"
                     "  olmkit list mail.olm --subject tide --sort date:desc\n"
                     "  olmkit list mail.olm --format csv > items.csv\n"
                     "  olmkit list mail.olm --format jsonl --columns index,date,label | "
                     "head -n 5\n");
        return list;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    void addColumns(CLI::App& list);
    void addOrder(CLI::App& list);
    void takeColumns(const std::vector<std::string>& names);

    ListOptions options;
};

void ListCommand::addColumns(CLI::App& list) {
    list.add_option_function<std::vector<std::string>>(
            "--columns", [this](const std::vector<std::string>& names) { takeColumns(names); },
            "The columns to show, in this order, with commas between them: " + columnNames() +
                ". date, label and folder are the table's columns DATE, NAME and FOLDER")
        ->type_name("COLUMN,...")
        ->allow_extra_args(false)
        ->delimiter(',')
        ->check(checkColumn);
}

void ListCommand::takeColumns(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        const RowColumn* column = findColumn(name);
        if (std::ranges::find(options.columns, column) != options.columns.end()) {
            throw CLI::ValidationError("--columns", "'" + name + "' is given twice");
        }
        options.columns.push_back(column);
    }
}

void ListCommand::addOrder(CLI::App& list) {
    list.add_option_function<std::string>(
            "--sort", [this](const std::string& text) { options.order = readOrder(text); },
            "The column to sort by, ascending or descending; all rows are held in memory")
        ->type_name("COLUMN[:desc]")
        ->check(checkOrder);
}

// Returns whether the archive was listed to its end; otherwise the output has failed.
bool listAll(olmhost::Session& session, Listing& listing, const Output& output) {
    const olmhost::RowCallback takeRow = [&listing](const olmhost::Row& row) {
        return listing.take(row) ? olmhost::RowAnswer::Continue : olmhost::RowAnswer::Pause;
    };
    while (!output.failed()) {
        if (session.list(takeRow)) {
            break;
        }
    }
    return !output.failed();
}

ExitCode ListCommand::run(Output& output, Messages& messages) {
    output.endProcessWhenClosed();
    ArchiveInput archive(options.archive);
    if (const ExitCode code = archive.open(messages); code != ExitCode::Done) {
        return code;
    }
    olmhost::Session& session = archive.session();
    Listing listing(options, output);
    const bool isListed = listAll(session, listing, output);
    const bool isOlm = !isListed || session.isOlmArchive();
    if (isListed && isOlm) {
        listing.finish();
    }
    output.flush(); // the rows come before the messages
    messages.faults(options.archive, session);
    const ExitCode code = exitCodeOf(session.faults());
    if (!isOlm && code != ExitCode::Unreadable) {
        return messages.notOlmArchive(options.archive, session);
    }
    return output.finish(code, messages);
}

} // namespace

std::unique_ptr<Command> makeList() {
    return std::make_unique<ListCommand>();
}

} // namespace olmkit
