#ifndef OLMKIT_CLI_INFO_FOLDERTREE_H
#define OLMKIT_CLI_INFO_FOLDERTREE_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// One folder, with the number of its items.
struct Folder {
    std::uint64_t own = 0;   // items directly in it
    std::uint64_t total = 0; // these and all below it; see FolderTree::total()
    std::map<std::string, Folder, std::less<>> children; // by name, in byte order
};

// The folders of an archive.
//
// No path makes the tree deeper than `maxDepth`: items below count as items of the folder at that
// depth, so that walking and printing the tree stays cheap for any archive.
class FolderTree {
public:
    static constexpr std::size_t maxDepth = 64;

    // Adds `items` to a folder, creating it if necessary. `path` is UTF-8; empty levels are
    // ignored.
    void add(std::string_view path, std::uint64_t items);

    // Returns the folder with that path, or null.
    const Folder* find(std::string_view path) const;

    // Computes the totals. Call it after the last add().
    void total();

    const Folder& root() const { return top; }

private:
    Folder top;
};

} // namespace olmkit

#endif
