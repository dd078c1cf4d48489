#ifndef OLMKIT_CLI_MANIFEST_LISTEDFILE_H
#define OLMKIT_CLI_MANIFEST_LISTEDFILE_H

#include <cstdint>
#include <string>
#include <vector>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestRow.h"

namespace olmkit {

// A file that a manifest lists.
struct ListedFile {
    std::string path; // below the output folder
    std::uint64_t size = 0;
    std::string sha256;
};

// Returns the files of a row: its message, then the files of its attachments in order. Empty for an
// item that failed.
std::vector<ListedFile> filesOf(const ManifestRow& row);

// How a file compares with its line in the manifest.
enum class FileState {
    Intact,
    Missing, // or can't be opened
    Changed, // another size or SHA-256, or it can't be read
};

// Opens the file below `directory`, follows no link, and reads all of it.
FileState stateOf(const ListedFile& file, const OutputDirectory& directory);

} // namespace olmkit

#endif
