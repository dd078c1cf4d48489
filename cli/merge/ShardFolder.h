#ifndef OLMKIT_CLI_MERGE_SHARDFOLDER_H
#define OLMKIT_CLI_MERGE_SHARDFOLDER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestLines.h"
#include "cli/manifest/RunRecord.h"
#include "cli/manifest/SummaryNumbers.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"

namespace olmkit {

// The output folder of a complete shard, open for reading, and how far its manifest is joined.
class ShardFolder {
public:
    explicit ShardFolder(std::string path) : folderPath(std::move(path)) {}

    // Opens the folder and checks that it has a complete shard with a manifest of its items alone.
    // Returns Done, or another exit code after a message. The other functions require Done.
    ExitCode open(Messages& messages);

    const std::string& path() const { return folderPath; }
    const OutputDirectory& directory() const { return folder; }
    const RunRecord& record() const { return *ownRecord; }
    const Shard& shard() const { return *ownRecord->shard(); }

    // Returns nothing when the summary can't be read.
    const std::optional<SummaryNumbers>& summary() const { return ownSummary; }

    // The next line of the manifest, in the order of the indexes.
    bool isAtEnd() const { return place == lines.count(); }
    std::uint64_t nextIndex() const { return lines.index(place); }
    std::string nextLine() const { return lines.line(place); }
    void skipLine() { ++place; }

private:
    ExitCode checkLines(Messages& messages) const;
    ExitCode checkSeal(Messages& messages) const;

    std::string folderPath;
    OutputDirectory folder;
    ManifestLines lines;
    std::optional<RunRecord> ownRecord;
    std::optional<SummaryNumbers> ownSummary;
    std::size_t place = 0; // of the next line
};

} // namespace olmkit

#endif
