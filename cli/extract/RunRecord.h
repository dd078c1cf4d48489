#ifndef OLMKIT_CLI_EXTRACT_RUNRECORD_H
#define OLMKIT_CLI_EXTRACT_RUNRECORD_H

#include <optional>
#include <string>

#include "cli/extract/ExtractOptions.h"
#include "host/session/Session.h"

namespace olmkit {

// What decides about the files that a run writes: the program, the archive, the options. It is the
// same on every machine, so it tells whether two runs belong together.
class RunRecord {
public:
    // Stands in the output folder as long as its run is not complete.
    static constexpr const char* unfinishedName = "unfinished.json";
    // Stands beside the manifest of a complete run that wrote one shard.
    static constexpr const char* shardName = "shard.json";

    // That of a run. `session` is open.
    RunRecord(const ExtractOptions& options, const olmhost::Session& session);

    // One that was kept; none when the text is no record.
    static std::optional<RunRecord> read(const std::string& text);

    // To be kept: one line.
    const std::string& text() const { return line; }

    const std::optional<Shard>& shard() const { return ownShard; }

    // What sets another record apart, in words for people ("was made from another archive"); empty
    // when nothing does. Shards don't count.
    std::string differenceTo(const RunRecord& other) const;

private:
    RunRecord() = default;

    std::string line;
    std::string program;
    std::string archive;
    std::string chosen;
    std::optional<Shard> ownShard;
};

// How a shard is called: "1/4".
std::string shardTitle(const Shard& shard);

} // namespace olmkit

#endif
