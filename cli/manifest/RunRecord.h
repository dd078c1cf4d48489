#ifndef OLMKIT_CLI_MANIFEST_RUNRECORD_H
#define OLMKIT_CLI_MANIFEST_RUNRECORD_H

#include <optional>
#include <string>

#include "cli/manifest/ManifestSeal.h"
#include "cli/manifest/Shard.h"
#include "cli/rows/JsonLine.h"

namespace olmkit {

// What determines the files that a run writes: the program's version, the archive, the options, the
// shard. It holds no path and no time, so runs on different machines can be compared.
//
// The record is runfile::unfinished until its run is complete; that of a complete shard stays as
// runfile::shard.
class RunRecord {
public:
    // Makes the record of a run of this program.
    RunRecord(const JsonObject& archive, const JsonObject& options,
              const std::optional<Shard>& shard);

    // Reads a record that was written earlier. Returns nothing when the text is not a record.
    static std::optional<RunRecord> read(const std::string& text);

    // Returns the contents of the record's file: one line.
    const std::string& text() const { return line; }

    // Returns the same with the seal of the manifest, for a complete run.
    std::string sealedText(const ManifestSeal& seal) const;

    // Returns the seal of the manifest; nothing before the run is complete.
    const std::optional<ManifestSeal>& seal() const { return ownSeal; }

    const std::optional<Shard>& shard() const { return ownShard; }

    // Returns how this record's run differs from another, as the end of a message ("was made from
    // another archive"), or an empty text. The shards are not compared.
    std::string differenceTo(const RunRecord& other) const;

private:
    RunRecord() = default;

    std::string line;
    std::string program;
    std::string archive;
    std::string options;
    std::optional<Shard> ownShard;
    std::optional<ManifestSeal> ownSeal;
};

} // namespace olmkit

#endif
