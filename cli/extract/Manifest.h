#ifndef OLMKIT_CLI_EXTRACT_MANIFEST_H
#define OLMKIT_CLI_EXTRACT_MANIFEST_H

#include <cstdint>
#include <string>
#include <string_view>

#include "cli/extract/ManifestLines.h"
#include "cli/files/OutputDirectory.h"

namespace olmkit {

// The manifest of a run: one line a requested item.
//
// While the run lasts the lines go to a file of their own, each whole and at once, so that not even
// a killed run loses what it has told; what a manifest that stands there says stays valid until
// then. Functions give 0 or an errno value.
class Manifest {
public:
    static constexpr const char* fileName = "manifest.jsonl";
    static constexpr const char* partName = "manifest.jsonl.part"; // the lines of a run
    static constexpr const char* keptName = "manifest.jsonl.kept"; // those of runs that it goes on

    // `directory` is borrowed.
    explicit Manifest(OutputDirectory& directory) : directory(directory) {}
    Manifest(const Manifest&) = delete;
    Manifest& operator=(const Manifest&) = delete;
    ~Manifest();

    // Begins anew.
    int begin();

    // Begins, and takes over the lines of the run that was broken off.
    int goOn();

    // The lines that were taken over.
    const ManifestLines& keptLines() const { return kept; }

    // Adds a line, its end included.
    int add(const std::string& line);

    // Gives the file its name.
    int finish();

    // The same for a run that is broken off: lines that were taken over and lie beyond `end`, the
    // first index that the run did not come to, are added before.
    int breakOff(std::uint64_t end);

private:
    int setKeptAside();
    int appendPartToKept();

    OutputDirectory& directory;
    ManifestLines kept;
    int file = -1;
    std::uint64_t size = 0; // bytes of whole lines
};

} // namespace olmkit

#endif
