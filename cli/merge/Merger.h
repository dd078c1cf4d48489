#ifndef OLMKIT_CLI_MERGE_MERGER_H
#define OLMKIT_CLI_MERGE_MERGER_H

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ListedFile.h"
#include "cli/manifest/Manifest.h"
#include "cli/manifest/Summary.h"
#include "cli/merge/MergeOptions.h"
#include "cli/merge/ShardFolder.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"

namespace olmkit {

struct MergeCounts {
    std::uint64_t items = 0;    // lines of the manifest
    std::uint64_t messages = 0; // items with a message
};

// Joins the folders of all shards of one run. Nothing is written before it is certain that they
// belong together and that none is missing.
class Merger {
public:
    // Both are borrowed.
    Merger(const MergeOptions& options, Messages& messages);

    // Joins the shards, reports what is wrong, and returns the exit code. Call it once.
    ExitCode run();

    // Whether the joined manifest is complete.
    bool isDone() const { return done; }
    const MergeCounts& counts() const { return numbers; }
    // Returns the joined summary, or nothing when a shard has none.
    const SummaryNumbers* summary() const { return totals ? &totals->numbers() : nullptr; }

private:
    ExitCode openShards();
    ExitCode compare();
    ExitCode findMissing();
    ExitCode openTarget();
    ExitCode join();
    ExitCode joinSummaries();
    ExitCode sync();
    ShardFolder* nextShard();
    bool skipEqualLines(std::uint64_t index, const std::string& line);
    int add(const ShardFolder& shard, const std::string& line);
    std::string fetchAll(const ShardFolder& shard, const ManifestRow& row, int& targetError);
    std::string fetch(const ShardFolder& shard, const ListedFile& file, int& targetError);
    ExitCode refuse(ExitCode code, const std::string& text);
    ExitCode outputFailed(const std::string& name, int errorNumber);

    const MergeOptions& options;
    Messages& messages;
    std::deque<ShardFolder> shards;
    OutputDirectory target;
    Manifest manifest;
    std::optional<Summary> totals;
    bool done = false;
    bool hasLosses = false;
    MergeCounts numbers;
};

} // namespace olmkit

#endif
