#ifndef OLMKIT_CLI_VERIFY_VERIFIER_H
#define OLMKIT_CLI_VERIFY_VERIFIER_H

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ListedFile.h"
#include "cli/manifest/ManifestRow.h"
#include "cli/verify/Difference.h"

namespace olmkit {

// Compares the rows of a manifest with the files, one row at a time.
class Verifier {
public:
    using Listener = std::function<void(const Difference&)>;

    // `directory` is open and borrowed. `listener` is called for each difference. With `remembers`
    // the paths are held in memory for checkOthers().
    Verifier(const OutputDirectory& directory, bool remembers, Listener listener)
        : directory(directory), remembers(remembers), listener(std::move(listener)) {}

    // Checks the files of a row.
    void check(const ManifestRow& row);

    // Compares the whole manifest, an open file, with what the summary in the folder says of it, as
    // a manifest that lost lines is valid by itself. Returns false when there is no summary.
    bool checkManifest(int file);

    // After all rows: finds the files in the folder `path` that no row listed, in the order of
    // their paths. The run's own files don't count.
    void checkOthers(const std::string& path);

    std::uint64_t messageCount() const { return messages; }
    std::uint64_t attachmentCount() const { return attachments; }
    std::uint64_t failedCount() const { return failed; } // items without a message
    std::uint64_t goodCount() const { return good; }     // files that match the manifest
    std::uint64_t byteCount() const { return bytes; }    // size of those files
    std::uint64_t differenceCount() const { return differences; }

private:
    void check(const ListedFile& file);
    bool open(Difference& difference, int& file);
    bool compare(Difference& difference, int file);
    void add(const Difference& difference);

    const OutputDirectory& directory;
    bool remembers;
    Listener listener;
    std::unordered_set<std::string> listedPaths;
    std::uint64_t messages = 0;
    std::uint64_t attachments = 0;
    std::uint64_t failed = 0;
    std::uint64_t good = 0;
    std::uint64_t bytes = 0;
    std::uint64_t differences = 0;
};

} // namespace olmkit

#endif
