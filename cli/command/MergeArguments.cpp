#include "cli/command/Arguments.h"

namespace olmkit {

namespace {

constexpr const char* mergeExamples =
    "Examples:\n"
    "  olmkit merge part1 part2 -o messages\n"
    "  olmkit merge part1 part2 part3\n"
    "\n"
    "Every message is checked by its SHA-256, then linked, or copied "
    "where it can't be. The result\n"
    "is the same as that of one extraction without --shard.\n";

} // namespace

void defineMerge(CLI::App& app, MergeOptions& options) {
    CLI::App* merge = app.add_subcommand("merge", "Join the folders that extract --shard wrote");
    merge->add_option("DIR", options.directories, "The folders of all shards")->required();
    merge
        ->add_option("-o,--output", options.output,
                     "The folder to write to, a new one or one of those [the first one]")
        ->type_name("DIR");
    merge->footer(mergeExamples);
}

} // namespace olmkit
