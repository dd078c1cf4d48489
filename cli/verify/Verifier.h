#ifndef OLMKIT_CLI_VERIFY_VERIFIER_H
#define OLMKIT_CLI_VERIFY_VERIFIER_H

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>

#include "cli/extract/ManifestRow.h"
#include "cli/files/OutputDirectory.h"
#include "cli/verify/Difference.h"

namespace olmkit {

// Compares the rows of a manifest with the files, row after row.
class Verifier {
public:
    using Listener = std::function<void(const Difference&)>;

    // `directory` is open and borrowed; `listener` is told of each difference. `remembers`: the
    // paths are kept, for checkOthers().
    Verifier(const OutputDirectory& directory, bool remembers, Listener listener)
        : directory(directory), remembers(remembers), listener(std::move(listener)) {}

    // Checks the files that a row names.
    void check(const ManifestRow& row);

    // Behind all rows: tells of the files in `path`, the folder, that no row named, in the order of
    // their paths.
    void checkOthers(const std::string& path);

    std::uint64_t messageCount() const { return messages; }
    std::uint64_t attachmentCount() const { return attachments; }
    std::uint64_t failedCount() const { return failed; } // items without a message
    std::uint64_t goodCount() const { return good; }     // files that are as they should be
    std::uint64_t byteCount() const { return bytes; }    // of those
    std::uint64_t differenceCount() const { return differences; }

private:
    void check(const std::string& path, std::uint64_t size, const std::string& sha256);
    bool open(Difference& difference, int& file);
    bool compare(Difference& difference, int file);
    void tell(const Difference& difference);

    const OutputDirectory& directory;
    bool remembers;
    Listener listener;
    std::unordered_set<std::string> named;
    std::uint64_t messages = 0;
    std::uint64_t attachments = 0;
    std::uint64_t failed = 0;
    std::uint64_t good = 0;
    std::uint64_t bytes = 0;
    std::uint64_t differences = 0;
};

} // namespace olmkit

#endif
