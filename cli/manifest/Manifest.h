#ifndef OLMKIT_CLI_MANIFEST_MANIFEST_H
#define OLMKIT_CLI_MANIFEST_MANIFEST_H

#include <cstdint>
#include <string>
#include <string_view>

#include "cli/files/OutputDirectory.h"
#include "cli/files/Sha256.h"
#include "cli/manifest/ManifestLines.h"
#include "cli/manifest/ManifestSeal.h"

namespace olmkit {

// Writes the manifest of a run: one line for each requested item.
//
// During the run the lines go to runfile::manifestPart, each with one write, so that a run that is
// killed loses no line. A new run leaves an earlier manifest in place until finish(). Functions
// return 0 or an errno value.
class Manifest {
public:
    // `directory` is borrowed.
    explicit Manifest(OutputDirectory& directory) : directory(directory) {}
    Manifest(const Manifest&) = delete;
    Manifest& operator=(const Manifest&) = delete;
    ~Manifest();

    // Starts a run that uses no lines of earlier ones.
    int begin();

    // Starts a run that resumes an unfinished one: keeps the lines of that run.
    int resume();

    // The lines of the run that is resumed; none after begin().
    const ManifestLines& keptLines() const { return kept; }

    // Appends a line, which includes its line end.
    int add(const std::string& line);

    // Returns the seal of all lines. No line may be added after the first call.
    const ManifestSeal& seal();

    // Waits until all files are on the disk, renames the complete file to runfile::manifest and
    // removes the kept lines.
    int finish();

    // Like finish(), for a run that stopped before it reached the item `end`: kept lines of that
    // item and those after it are appended first.
    int breakOff(std::uint64_t end);

private:
    int collectKeptLines();
    int appendPartToKept();

    OutputDirectory& directory;
    ManifestLines kept;
    int file = -1;
    std::uint64_t size = 0; // bytes of whole lines
    Sha256 sha256;          // of those
    ManifestSeal ownSeal;   // without a hash until seal()
};

} // namespace olmkit

#endif
