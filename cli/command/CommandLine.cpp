#include "cli/command/CommandLine.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/command/ExitCode.h"

namespace olmkit {

namespace {

constexpr const char* versionText = "olmkit " OLMKIT_VERSION;

constexpr const char* listExamples = "Examples:\n"
                                     "  olmkit list mail.olm\n"
                                     "  olmkit list mail.olm --format csv > items.csv\n"
                                     "  olmkit list mail.olm --format jsonl | head -n 5\n";

constexpr const char* extractExamples =
    "Examples:\n"
    "  olmkit extract mail.olm -o messages\n"
    "  olmkit extract mail.olm -o messages --item 0 --item 7\n"
    "  olmkit extract mail.olm -o messages --at 12:1\n"
    "\n"
    "Each message appears under its name when it is whole, and takes the place of a file of that\n"
    "name. manifest.jsonl tells what became of every item.\n";

std::string exitCodeText() {
    std::ostringstream text;
    text << "Exit codes:\n";
    for (const ExitRow& row : exitRows()) {
        text << "  " << std::left << std::setw(5) << static_cast<int>(row.code) << row.meaning
             << "\n";
    }
    return text.str();
}

// Decimal digits alone, nothing around them.
template <typename Number> std::optional<Number> readNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return number;
}

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

// What the options are read into.
struct Parsed {
    ListOptions list;
    ExtractOptions extract;
    std::vector<std::string> items;
    std::vector<std::string> places;
};

CLI::App* defineList(CLI::App& app, Parsed& parsed) {
    static const std::map<std::string, RowFormat> formats = {
        {"table", RowFormat::Table}, {"csv", RowFormat::Csv}, {"jsonl", RowFormat::JsonLines}};
    CLI::App* list = app.add_subcommand("list", "List the items of an archive, one row each");
    list->add_option("ARCHIVE", parsed.list.archive, "The OLM archive")->required();
    list->add_option_function<std::string>(
            "--format",
            [&parsed](const std::string& name) { parsed.list.format = formats.at(name); },
            "table for people; csv or jsonl (one JSON object a line) for programs [table]")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"table", "csv", "jsonl"}));
    list->footer(listExamples);
    return list;
}

CLI::App* defineExtract(CLI::App& app, Parsed& parsed) {
    CLI::App* extract = app.add_subcommand("extract", "Write items as .msg files, by default all");
    extract->add_option("ARCHIVE", parsed.extract.archive, "The OLM archive")->required();
    extract
        ->add_option("-o,--output", parsed.extract.directory,
                     "The folder to write to; it is made when it is not there")
        ->type_name("DIR")
        ->required();
    extract
        ->add_option("--item", parsed.items,
                     "Only this item, by its index; may be given repeatedly")
        ->type_name("N")
        ->allow_extra_args(false)
        ->check(CLI::Validator(checkIndex, ""));
    extract
        ->add_option(
            "--at", parsed.places,
            "Only the item at this place, by entry and item as list has them; may be given "
            "repeatedly")
        ->type_name("ENTRY:ITEM")
        ->allow_extra_args(false)
        ->check(CLI::Validator(checkPlace, ""));
    extract->footer(extractExamples);
    return extract;
}

// A mistyped command counts as none, and is left over.
std::string errorText(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (!app.get_subcommands().empty() || left.empty()) {
        return error.what();
    }
    std::string text = "there is no command '" + left.front() + "'; the commands are";
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        text += " " + command->get_name();
    }
    return text;
}

Command extractCommand(Parsed& parsed) {
    for (const std::string& text : parsed.items) {
        parsed.extract.items.push_back(readNumber<std::uint64_t>(text).value_or(0));
    }
    for (const std::string& text : parsed.places) {
        parsed.extract.places.push_back(readPlace(text).value_or(ItemPlace{}));
    }
    return parsed.extract;
}

} // namespace

Command parseCommandLine(int argc, const char* const* argv) {
    Parsed parsed;
    CLI::App app("Reads OLM archives: lists their items, and writes items as .msg files.",
                 "olmkit");
    app.set_version_flag("--version", versionText, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(1);
    CLI::App* list = defineList(app, parsed);
    defineExtract(app, parsed);
    app.footer("Examples:\n"
               "  olmkit list mail.olm\n"
               "  olmkit extract mail.olm -o messages\n"
               "\n" +
               exitCodeText() + "\nolmkit COMMAND --help tells more about a command.\n");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion&) {
        return HelpText{std::string(versionText) + "\n"};
    } catch (const CLI::CallForHelp&) {
        return HelpText{app.help()};
    } catch (const CLI::ParseError& error) {
        return UsageError{errorText(app, error)};
    }
    if (list->parsed()) {
        return parsed.list;
    }
    return extractCommand(parsed);
}

} // namespace olmkit
