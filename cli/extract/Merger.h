#ifndef OLMKIT_CLI_EXTRACT_MERGER_H
#define OLMKIT_CLI_EXTRACT_MERGER_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "cli/extract/Manifest.h"
#include "cli/extract/ManifestLines.h"
#include "cli/extract/ManifestRow.h"
#include "cli/extract/MergeOptions.h"
#include "cli/extract/RunRecord.h"
#include "cli/extract/Summary.h"
#include "cli/files/OutputDirectory.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"

namespace olmkit {

struct MergeCounts {
    std::uint64_t items = 0;    // lines of the manifest
    std::uint64_t messages = 0; // of those, the ones that have a message
};

// Joins the folders of all shards of one run. Nothing is written before it is sure that they belong
// together and that none is missing.
class Merger {
public:
    // Both borrowed.
    Merger(const MergeOptions& options, Messages& messages);

    // Call it once.
    ExitCode run();

    // Whether the joined manifest stands.
    bool isDone() const { return done; }
    const MergeCounts& counts() const { return numbers; }
    // The joined books; none when a shard has none.
    const std::optional<Summary>& books() const { return summary; }

private:
    // A file as a manifest tells of it.
    struct FileRow {
        std::string path;
        std::uint64_t size;
        std::string sha256;
    };

    struct Source {
        std::string path;
        OutputDirectory directory;
        ManifestLines lines;
        std::optional<RunRecord> record;
        std::optional<Summary> summary;
        std::size_t next = 0; // place of the line that is to be joined next
    };

    ExitCode openSources();
    ExitCode openSource(Source& source);
    ExitCode compare();
    ExitCode checkLines(const Source& source);
    ExitCode findMissing();
    ExitCode openTarget();
    ExitCode join();
    ExitCode closeBooks();
    Source* nextSource();
    bool isRepeatedAsItIs(std::uint64_t index, const std::string& line);
    int add(const Source& source, const std::string& line);
    std::string fetchAll(const Source& source, const ManifestRow& row, int& targetError);
    std::string fetch(const Source& source, const FileRow& row, int& targetError);
    ExitCode refuse(ExitCode code, const std::string& text);

    const MergeOptions& options;
    Messages& messages;
    std::deque<Source> sources;
    OutputDirectory target;
    Manifest manifest;
    std::optional<Summary> summary;
    bool done = false;
    bool hasLosses = false;
    MergeCounts numbers;
};

} // namespace olmkit

#endif
