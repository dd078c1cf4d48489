#include <memory>
#include <vector>

#include "cli/command/ArchiveInput.h"
#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/command/FilterArguments.h"
#include "cli/command/ItemArguments.h"
#include "cli/extract/ExtractOptions.h"
#include "cli/extract/Extractor.h"
#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryTable.h"
#include "cli/rows/ItemFilter.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr unsigned maxJobs = 256;

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
    return readShard(text)
               ? ""
               : "'" + text + "' is not a shard; use I/N with I from 1 to N, such as 2/4";
}

std::string checkJobs(const std::string& text) {
    const auto jobs = readNumber<unsigned>(text);
    return jobs && *jobs >= 1 && *jobs <= maxJobs
               ? ""
               : "'" + text + "' is not a number of jobs; use 1 to " + std::to_string(maxJobs);
}

std::string checkErrorCount(const std::string& text) {
    return readNumber<std::uint64_t>(text).value_or(0) > 0
               ? ""
               : "'" + text + "' is not a number of errors; use 1, 2, 3, ...";
}

// Writes the messages of the chosen items and the manifest to a folder. Prints a summary, and a
// message for each item that failed and each entry that can't be read.
class ExtractCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* extract =
            program.add_subcommand("extract", "Write items as .msg files, by default all");
        addArchive(*extract, options.archive);
        extract
            ->add_option("-o,--output", options.directory,
                         "The folder to write to; it is created when it doesn't exist")
            ->type_name("DIR")
            ->required()
            ->check(checkPath);
        addItems(*extract);
        extract->add_flag("--attachments", options.attachments,
                          "Also write each mail's attachments, to a folder next to its message");
        addFilter(*extract, options.filter);
        addForm(*extract);
        addCourse(*extract);
        extract->final_callback([this] { refuseFilterWithItems(); });
        extract->footer("Examples:\n"
                        "  olmkit extract mail.olm -o messages\n"
                        "  olmkit extract mail.olm -o messages --item 0 --item 7\n"
                        "  olmkit extract mail.olm -o messages --at 12:1\n"
                        "  olmkit extract mail.olm -o messages --attachments\n"
                        "  olmkit extract mail.olm -o messages --resume\n"
                        "  olmkit extract mail.olm -o part2 --shard 2/4\n"
                        "\n"
                        "A message appears under its name only when it is complete, and replaces a "
                        "file of that name.\nmanifest.jsonl records the outcome of every item. "
                        "--resume continues an interrupted run.\nShards may be written on "
                        "different machines; olmkit merge joins them.\n");
        return extract;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    void addItems(CLI::App& extract);
    void addForm(CLI::App& extract);
    void addCourse(CLI::App& extract);
    void refuseFilterWithItems() const;
    ExitCode report(ExitCode code, const Extractor& extractor, Output& output,
                    Messages& messages) const;
    std::string summary(const Extractor& extractor) const;

    ExtractOptions options;
};

void ExtractCommand::addItems(CLI::App& extract) {
    extract
        .add_option_function<std::vector<std::string>>(
            "--item",
            [this](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    options.items.push_back(readNumber<std::uint64_t>(text).value());
                }
            },
            "Only the item with this index; may be repeated")
        ->type_name("N")
        ->allow_extra_args(false)
        ->check(checkIndex);
    extract
        .add_option_function<std::vector<std::string>>(
            "--at",
            [this](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    options.places.push_back(readPlace(text).value());
                }
            },
            "Only the item at this place, its entry and item in the list; may be repeated")
        ->type_name("ENTRY:ITEM")
        ->allow_extra_args(false)
        ->check(checkPlace);
}

// The options that decide what is written.
void ExtractCommand::addForm(CLI::App& extract) {
    addChoice(extract, "--layout", options.layout, {{"tree", Layout::Tree}, {"flat", Layout::Flat}},
              "tree: the archive's folders; flat: all messages in one folder [tree]")
        ->type_name("LAYOUT");
    extract.add_flag("--timestamps", options.hasTimestamps,
                     "Set each file's time to the date of its item, as in the list");
    extract
        .add_option_function<std::string>(
            "--shard", [this](const std::string& text) { options.shard = readShard(text); },
            "Only part I of N parts of the items, to a folder of its own")
        ->type_name("I/N")
        ->check(checkShard)
        ->excludes("--at");
}

// The options that decide how the run goes.
void ExtractCommand::addCourse(CLI::App& extract) {
    extract
        .add_option_function<std::string>(
            "--jobs",
            [this](const std::string& text) { options.jobs = readNumber<unsigned>(text).value(); },
            "Write this many messages at once; the result is the same [one for each core]")
        ->type_name("N")
        ->check(checkJobs);
    extract.add_flag("--resume", options.isResumed,
                     "Continue an interrupted run; messages that are complete are kept");
    extract.add_flag("--no-sync", options.skipsSync, "Don't wait until the files are on the disk");
    extract.add_flag("--dry-run", options.isDryRun,
                     "Write nothing; print the index and the path of every message");
    extract.add_flag("--fail-fast", options.failsFast, "Stop at the first item that fails");
    extract
        .add_option_function<std::string>(
            "--max-errors",
            [this](const std::string& text) {
                options.maxErrors = readNumber<std::uint64_t>(text);
            },
            "Stop after this many items have failed")
        ->type_name("N")
        ->check(checkErrorCount);
}

void ExtractCommand::refuseFilterWithItems() const {
    if (!options.isEverything() && !ItemFilter(options.filter).takesEverything()) {
        throw CLI::ValidationError("--item and --at can't be used together with filters");
    }
}

ExitCode ExtractCommand::run(Output& output, Messages& messages) {
    Interrupt::askToStop();
    ArchiveInput archive(options.archive);
    if (const ExitCode code = archive.open(messages); code != ExitCode::Done) {
        return code;
    }
    if (options.isDryRun) {
        output.endProcessWhenClosed();
    }
    olmhost::Session& session = archive.session();
    Extractor extractor(options, session, output, messages);
    const ExitCode code = extractor.run();
    const std::vector<olmhost::EntryFault> faults = extractor.faults();
    messages.faults(options.archive, session, faults, extractor.reportedEntries());
    if (code == ExitCode::NotAnArchive) {
        return messages.notOlmArchive(options.archive, session);
    }
    const bool hasFaults = !faults.empty();
    return report(hasFaults && code == ExitCode::Done ? ExitCode::Partial : code, extractor, output,
                  messages);
}

// Prints how the run ended, with `code` so far, and returns its exit code.
ExitCode ExtractCommand::report(ExitCode code, const Extractor& extractor, Output& output,
                                Messages& messages) const {
    const std::string written =
        std::to_string(extractor.counts().written) + " messages were written" +
        (extractor.canBeResumed() ? "; run the same command with --resume to continue" : "");
    if (code == ExitCode::Interrupted) {
        messages.error("interrupted; " + written);
        return code;
    }
    if (extractor.isRefused()) {
        return code;
    }
    if (extractor.canBeResumed()) {
        messages.error("stopped; " + written);
    }
    if (!options.isDryRun && !messages.isQuiet()) {
        output.buffer() += summary(extractor) + summaryTable(extractor.summary());
    }
    return output.finish(code, messages);
}

std::string ExtractCommand::summary(const Extractor& extractor) const {
    const std::uint64_t requested = extractor.counts().requested;
    const std::uint64_t written = extractor.counts().written;
    std::string text = std::to_string(written) + " of " + std::to_string(requested) +
                       (requested == 1 ? " message" : " messages") + " written to " +
                       options.directory;
    if (written < requested) {
        text += "; " + std::to_string(requested - written) + " failed, see " + options.directory +
                "/" + runfile::manifest;
    }
    if (const std::uint64_t warned = extractor.counts().warned; warned > 0) {
        text += "; " + std::to_string(warned) + " with warnings";
    }
    return text + (extractor.isStopped() ? "; the others were not tried\n" : "\n");
}

} // namespace

std::unique_ptr<Command> makeExtract() {
    return std::make_unique<ExtractCommand>();
}

} // namespace olmkit
