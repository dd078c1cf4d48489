#include <memory>

#include "cli/command/ArchiveInput.h"
#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/command/ItemArguments.h"
#include "cli/show/Show.h"
#include "cli/show/ShowOptions.h"

namespace olmkit {

namespace {

// Prints what the message of one item contains.
class ShowCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* show =
            program.add_subcommand("show", "Show one item: every property of its message");
        addArchive(*show, options.archive);
        addItem(*show);
        addForms(*show);
        show->footer("Examples:\n"
                     "  olmkit show mail.olm 7\n"
                     "  olmkit show mail.olm 7 --body\n"
                     "  olmkit show mail.olm --at 12:1 --json\n"
                     "\n"
                     "Times are those in the message, in UTC. On a terminal, values are "
                     "wrapped to its\nwidth; elsewhere each value is one line.\n");
        return show;
    }

    ExitCode run(Output& output, Messages& messages) override {
        ArchiveInput archive(options.archive);
        if (const ExitCode code = archive.open(messages); code != ExitCode::Done) {
            return code;
        }
        return Show(options, archive.session(), output, messages).run();
    }

private:
    void addItem(CLI::App& show);
    void addForms(CLI::App& show);

    ShowOptions options;
};

void ShowCommand::addItem(CLI::App& show) {
    CLI::Option* index = show.add_option_function<std::string>(
                                 "N",
                                 [this](const std::string& text) {
                                     options.index = readNumber<std::uint64_t>(text);
                                 },
                                 "The item's index in the list")
                             ->type_name("")
                             ->check(checkIndex);
    CLI::Option* place =
        show.add_option_function<std::string>(
                "--at", [this](const std::string& text) { options.place = readPlace(text); },
                "Instead of N: the item's place, its entry and item in the list")
            ->type_name("ENTRY:ITEM")
            ->check(checkPlace);
    index->excludes(place);
    show.callback([this] {
        if (!options.index.has_value() && !options.place.has_value()) {
            throw CLI::ValidationError("N or --at ENTRY:ITEM is missing");
        }
    });
}

void ShowCommand::addForms(CLI::App& show) {
    CLI::Option* json = show.add_flag_callback(
        "--json", [this] { options.form = ShowForm::Json; }, "Print one JSON object");
    CLI::Option* body = show.add_flag_callback(
        "--body", [this] { options.form = ShowForm::Body; },
        "Print only the item's text: the plain body, or else the text of the HTML body");
    json->excludes(body);
}

} // namespace

std::unique_ptr<Command> makeShow() {
    return std::make_unique<ShowCommand>();
}

} // namespace olmkit
