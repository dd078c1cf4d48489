#ifndef OLMKIT_CLI_EXTRACT_MESSAGEPATHS_H
#define OLMKIT_CLI_EXTRACT_MESSAGEPATHS_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/extract/ExtractOptions.h"
#include "host/session/Row.h"

namespace olmkit {

// Where a message goes below the output folder.
struct MessagePath {
    std::vector<std::string> folders; // from the outside in
    std::string file;                 // ends in ".msg"

    // The whole of it with "/" between.
    std::string text() const;
};

// Gives every row of an archive its path. Two rows never get the same one, nor two that a file
// system without regard to case would take for the same; no file stands where a folder has to.
//
// Every row has to be shown, in index order, whether its item is wanted or not: then an item has
// the same path whatever else is extracted. Of each path a hash is kept, no text.
class MessagePaths {
public:
    explicit MessagePaths(Layout layout) : layout(layout) {}

    MessagePath next(const olmhost::Row& row);

    // The name of the folder beside a message that its attachments go to. No other folder has it.
    static std::string attachmentFolder(const MessagePath& message);

    // A path for an item that no row tells of, to be asked for behind all rows.
    MessagePath ofUnlisted(std::uint32_t entry, std::uint32_t item);

private:
    MessagePath unique(MessagePath path, const std::string& stem);
    bool take(std::uint64_t key) { return nextNumbers.try_emplace(key, firstNumber).second; }

    static constexpr std::uint32_t firstNumber = 2; // the first row of a name has none

    Layout layout;

    // Hash of a folded path that is taken; the number that the next row of that name tries.
    std::unordered_map<std::uint64_t, std::uint32_t> nextNumbers;
};

} // namespace olmkit

#endif
