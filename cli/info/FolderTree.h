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
    std::uint64_t own = 0;   // items that lie directly in it
    std::uint64_t total = 0; // these, and all below it; see FolderTree::total()
    std::map<std::string, Folder, std::less<>> children; // by name, in byte order
};

// The folders of an archive.
//
// No path makes the tree deeper than `deepest`: what lies deeper counts as lying in the folder at
// that depth, so that walking the tree, and printing it, stay cheap whatever an archive holds.
class FolderTree {
public:
    static constexpr std::size_t deepest = 64;

    // Adds `items` to a folder, which is made when it isn't there. `path` is UTF-8; empty levels
    // are left out.
    void add(std::string_view path, std::uint64_t items);

    // The folder of a path as add() takes it, or null.
    const Folder* find(std::string_view path) const;

    // Works out the totals. Call it when everything was added.
    void total();

    const Folder& root() const { return top; }

private:
    Folder top;
};

} // namespace olmkit

#endif
