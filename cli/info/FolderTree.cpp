#include "cli/info/FolderTree.h"

#include <algorithm>

namespace olmkit {

namespace {

// Never called deeper than FolderTree::deepest.
std::uint64_t totalOf(Folder& folder) {
    folder.total = folder.own;
    for (auto& [name, child] : folder.children) {
        folder.total += totalOf(child);
    }
    return folder.total;
}

} // namespace

void FolderTree::add(std::string_view path, std::uint64_t items) {
    Folder* folder = &top;
    std::size_t depth = 0;
    while (!path.empty() && depth < deepest) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view name = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (name.empty()) {
            continue;
        }
        auto child = folder->children.find(name);
        if (child == folder->children.end()) {
            child = folder->children.emplace(name, Folder()).first;
        }
        folder = &child->second;
        ++depth;
    }
    folder->own += items;
}

void FolderTree::total() {
    totalOf(top);
}

} // namespace olmkit
