#include <vector>

#include "cli/command/Arguments.h"
#include "cli/command/ItemArguments.h"
#include "cli/rows/ItemFilter.h"

namespace olmkit {

namespace {

constexpr unsigned mostJobs = 256;

constexpr const char* extractExamples =
    "Examples:\n"
    "  olmkit extract mail.olm -o messages\n"
    "  olmkit extract mail.olm -o messages --item 0 --item 7\n"
    "  olmkit extract mail.olm -o messages --at 12:1\n"
    "  olmkit extract mail.olm -o messages --attachments\n"
    "  olmkit extract mail.olm -o messages --resume\n"
    "  olmkit extract mail.olm -o part2 --shard 2/4\n"
    "\n"
    "Each message appears under its name when it is whole, and takes the place of a file of that\n"
    "name. manifest.jsonl tells what became of every item. A run that was broken off goes on with\n"
    "--resume. Shards may be written on machines of their own; olmkit merge joins them.\n";

std::optional<Shard> readShard(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto number = readNumber<std::uint64_t>(text.substr(0, slash));
    const auto count = readNumber<std::uint64_t>(text.substr(slash + 1));
    if (!number.has_value() || !count.has_value() || *number == 0 || *number > *count) {
        return std::nullopt;
    }
    return Shard{*number, *count};
}

std::string checkShard(const std::string& text) {
    return readShard(text) ? "" : "'" + text + "' is no shard; give I/N with I from 1 to N, as 2/4";
}

std::string checkJobs(const std::string& text) {
    const auto jobs = readNumber<unsigned>(text);
    return jobs && *jobs >= 1 && *jobs <= mostJobs
               ? ""
               : "'" + text + "' is no number of jobs; give 1 to " + std::to_string(mostJobs);
}

std::string checkCount(const std::string& text) {
    return readNumber<std::uint64_t>(text).value_or(0) > 0
               ? ""
               : "'" + text + "' is no number of errors; give 1, 2, 3 ...";
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

void addShape(CLI::App& extract, ExtractOptions& options) {
    extract
        .add_option_function<std::string>(
            "--layout",
            [&options](const std::string& name) {
                options.layout = name == "flat" ? Layout::Flat : Layout::Tree;
            },
            "tree: the folders of the archive; flat: all messages in one folder [tree]")
        ->type_name("LAYOUT")
        ->check(CLI::IsMember({"tree", "flat"}));
    extract.add_flag("--timestamps", options.hasTimestamps,
                     "Give each file the date of its item, as list shows it");
    extract
        .add_option_function<std::string>(
            "--shard", [&options](const std::string& text) { options.shard = readShard(text); },
            "Only part I of N parts of the items, into a folder of its own")
        ->type_name("I/N")
        ->check(CLI::Validator(checkShard, ""))
        ->excludes("--at");
}

void addCourse(CLI::App& extract, ExtractOptions& options) {
    extract
        .add_option_function<std::string>(
            "--jobs",
            [&options](const std::string& text) {
                options.jobs = readNumber<unsigned>(text).value();
            },
            "Make so many messages at once; the result is the same [one for each core]")
        ->type_name("N")
        ->check(CLI::Validator(checkJobs, ""));
    extract.add_flag("--resume", options.isResumed,
                     "Go on with a run that was broken off: what is there and whole stays");
    extract.add_flag("--dry-run", options.isDryRun,
                     "Write nothing; print the index and the path of every message");
    extract.add_flag("--fail-fast", options.failsFast, "Stop at the first item that fails");
    extract
        .add_option_function<std::string>(
            "--max-errors",
            [&options](const std::string& text) {
                options.maxErrors = readNumber<std::uint64_t>(text);
            },
            "Stop when so many items have failed")
        ->type_name("N")
        ->check(CLI::Validator(checkCount, ""));
}

// Chosen items are chosen whatever they are.
void refuseFilterBesideItems(const ExtractOptions& options) {
    if (!options.isEverything() && !ItemFilter(options.filter).takesEverything()) {
        throw CLI::ValidationError(
            "--item and --at choose items whatever they are; leave out the options that filter");
    }
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
    extract->add_flag("--attachments", options.attachments,
                      "Also write each mail's attachments, to a folder beside its message");
    addFilter(*extract, options.filter);
    addShape(*extract, options);
    addCourse(*extract, options);
    extract->final_callback([&options] { refuseFilterBesideItems(options); });
    extract->footer(extractExamples);
}

} // namespace olmkit
