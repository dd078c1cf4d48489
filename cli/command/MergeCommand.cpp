#include <memory>
#include <string>

#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/manifest/SummaryTable.h"
#include "cli/merge/MergeOptions.h"
#include "cli/merge/Merger.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Joins the folders of an extraction's shards and prints a summary.
class MergeCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* merge =
            program.add_subcommand("merge", "Join the folders that extract --shard wrote");
        merge->add_option("DIR", options.directories, "The folders of all shards")
            ->type_name("")
            ->required()
            ->check(checkPath);
        merge
            ->add_option("-o,--output", options.output,
                         "The folder to write to: a new one or one of the shards' [the first]")
            ->type_name("DIR")
            ->check(checkPath);
        merge->add_flag("--no-sync", options.skipsSync,
                        "Don't wait until the files are on the disk");
        merge->footer("Examples:\n"
                      "  olmkit merge part1 part2 -o messages\n"
                      "  olmkit merge part1 part2 part3\n"
                      "\n"
                      "Every message is checked by its SHA-256, then linked, or copied where "
                      "linking is not\npossible. The result is the same as that of one extraction "
                      "without --shard.\n");
        return merge;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    std::string summary(const Merger& merger) const;

    MergeOptions options;
};

ExitCode MergeCommand::run(Output& output, Messages& messages) {
    Interrupt::askToStop();
    Merger merger(options, messages);
    const ExitCode code = merger.run();
    if (code == ExitCode::Interrupted) {
        messages.error("interrupted; run the same command again");
    }
    if (!merger.isDone()) {
        return code;
    }
    output.buffer() += summary(merger);
    return output.finish(code, messages);
}

std::string MergeCommand::summary(const Merger& merger) const {
    const MergeCounts& counts = merger.counts();
    const std::string text =
        std::to_string(counts.messages) +
        (counts.messages == 1 ? " message of " : " messages of ") + std::to_string(counts.items) +
        (counts.items == 1 ? " item" : " items") + " joined in " + options.target() + "\n";
    return merger.summary() == nullptr ? text : text + summaryTable(*merger.summary());
}

} // namespace

std::unique_ptr<Command> makeMerge() {
    return std::make_unique<MergeCommand>();
}

} // namespace olmkit
