#include <vector>

#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* examples =
    "Examples:\n"
    "  olmkit extract mail.olm -o messages\n"
    "  olmkit extract mail.olm -o messages --item 0 --item 7\n"
    "  olmkit extract mail.olm -o messages --at 12:1\n"
    "\n"
    "Each message appears under its name when it is whole, and takes the place of a file of that\n"
    "name. manifest.jsonl tells what became of every item.\n";

std::optional<ItemPlace> readPlace(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto entry = readNumber<std::uint32_t>(text.substr(0, colon));
    const auto item = readNumber<std::uint32_t>(text.substr(colon + 1));
    if (!entry.has_value() || !item.has_value()) {
        return std::nullopt;
    }
    return ItemPlace{*entry, *item};
}

std::string checkIndex(const std::string& text) {
    return readNumber<std::uint64_t>(text) ? ""
                                           : "'" + text + "' is no item number; give 0, 1, 2 ...";
}

std::string checkPlace(const std::string& text) {
    return readPlace(text)
               ? ""
               : "'" + text + "' is no place; give ENTRY:ITEM as list has them, as 12:1";
}

void addItems(CLI::App& extract, ExtractOptions& options) {
    extract
        .add_option_function<std::vector<std::string>>(
            "--item",
            [&options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    options.items.push_back(readNumber<std::uint64_t>(text).value());
                }
            },
            "Only this item, by its index; may be given repeatedly")
        ->type_name("N")
        ->allow_extra_args(false)
        ->check(CLI::Validator(checkIndex, ""));
    extract
        .add_option_function<std::vector<std::string>>(
            "--at",
            [&options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    options.places.push_back(readPlace(text).value());
                }
            },
            "Only the item at this place, by entry and item as list has them; may be given "
            "repeatedly")
        ->type_name("ENTRY:ITEM")
        ->allow_extra_args(false)
        ->check(CLI::Validator(checkPlace, ""));
}

} // namespace

void defineExtract(CLI::App& app, ExtractOptions& options) {
    CLI::App* extract = app.add_subcommand("extract", "Write items as .msg files, by default all");
    addArchive(*extract, options.archive);
    extract
        ->add_option("-o,--output", options.directory,
                     "The folder to write to; it is made when it is not there")
        ->type_name("DIR")
        ->required();
    addItems(*extract, options);
    extract->footer(examples);
}

} // namespace olmkit
