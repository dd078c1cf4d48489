#ifndef OLMKIT_CLI_EXTRACT_MESSAGEPATHS_H
#define OLMKIT_CLI_EXTRACT_MESSAGEPATHS_H

#include <cstdint>
#include <string>
#include <unordered_map>

#include "cli/extract/ExtractOptions.h"
#include "cli/files/OutputPath.h"
#include "host/session/Row.h"

namespace olmkit {

// Assigns each row of an archive the path of its message. No two rows get the same path, nor paths
// that differ only in case or normal form, and no file has the path of a folder.
//
// next() has to be called for every row in index order, whether its item is wanted or not: an
// item's path then doesn't depend on what else is extracted. Of each path only a hash is held.
class MessagePaths {
public:
    explicit MessagePaths(Layout layout) : layout(layout) {}

    OutputPath next(const olmhost::Row& row);

    // Returns the name of the folder for a message's attachments, which is next to the message. No
    // other folder has this name.
    static std::string attachmentFolder(const OutputPath& message);

    // Returns a path for an item without a row. Call it after all rows.
    OutputPath ofUnlisted(std::uint32_t entry, std::uint32_t item);

private:
    OutputPath unique(OutputPath path, const std::string& stem);
    bool take(std::uint64_t key) { return nextNumbers.try_emplace(key, firstNumber).second; }

    static constexpr std::uint32_t firstNumber = 2; // the first row of a name has no number

    Layout layout;

    // By the hash of a folded path in use: the number that the next row of that name tries.
    std::unordered_map<std::uint64_t, std::uint32_t> nextNumbers;
};

} // namespace olmkit

#endif
