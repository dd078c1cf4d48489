#ifndef OLMKIT_CLI_MERGE_MERGEOPTIONS_H
#define OLMKIT_CLI_MERGE_MERGEOPTIONS_H

#include <string>
#include <vector>

namespace olmkit {

struct MergeOptions {
    std::vector<std::string> directories; // one for each shard, at least one
    bool skipsSync = false;               // doesn't wait until the files are on the disk
    std::string output;                   // the folder to write to; empty: the first shard's

    const std::string& target() const { return output.empty() ? directories.front() : output; }
};

} // namespace olmkit

#endif
