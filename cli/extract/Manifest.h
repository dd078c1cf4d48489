#ifndef OLMKIT_CLI_EXTRACT_MANIFEST_H
#define OLMKIT_CLI_EXTRACT_MANIFEST_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/extract/OutputDirectory.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Output.h"

namespace olmkit {

// What became of one requested item.
struct ManifestRow {
    std::optional<std::uint64_t> index; // none for an item that was asked for by its place
    std::optional<std::uint32_t> entry; // neither for an index that the archive doesn't have
    std::optional<std::uint32_t> item;
    std::string path; // below the output folder; empty when it failed
    std::uint64_t size = 0;
    std::string sha256;
    std::int32_t result = 0;
    std::uint16_t status = 0;
    std::string error;                 // empty when it was written
    std::vector<std::string> warnings; // what its message lacks, or may be wrong in it
};

// The file "manifest.jsonl": one line a requested item. It appears under its name with finish()
// alone. Functions give 0 or an errno value.
class Manifest {
public:
    static constexpr const char* fileName = "manifest.jsonl";

    // `directory` is borrowed.
    explicit Manifest(OutputDirectory& directory) : directory(directory) {}
    Manifest(const Manifest&) = delete;
    Manifest& operator=(const Manifest&) = delete;
    ~Manifest();

    int begin();
    int add(const ManifestRow& row);
    int finish();

private:
    OutputDirectory& directory;
    std::string temporary; // its name until finish()
    int file = -1;
    std::optional<Interrupt::Guard> guard;
    std::optional<Output> lines;
};

} // namespace olmkit

#endif
