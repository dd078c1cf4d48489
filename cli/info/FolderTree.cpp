#include "cli/info/FolderTree.h"

#include <algorithm>

namespace olmkit {

namespace {

// Never called deeper than FolderTree::maxDepth.
std::uint64_t totalOf(Folder& folder) {
    folder.total = folder.own;
    for (auto& [name, child] : folder.children) {
        folder.total += totalOf(child);
    }
    return folder.total;
}

// Takes the next level off the front of a path. Returns an empty name at its end.
std::string_view takeLevel(std::string_view& path) {
    std::string_view name;
    while (name.empty() && !path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        name = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return name;
}

} // namespace

void FolderTree::add(std::string_view path, std::uint64_t items) {
    Folder* folder = &top;
    for (std::size_t depth = 0; depth < maxDepth; ++depth) {
        const std::string_view name = takeLevel(path);
        if (name.empty()) {
            break;
        }
        auto child = folder->children.find(name);
        if (child == folder->children.end()) {
            child = folder->children.emplace(name, Folder()).first;
        }
        folder = &child->second;
    }
    folder->own += items;
}

const Folder* FolderTree::find(std::string_view path) const {
    const Folder* folder = &top;
    for (std::size_t depth = 0; depth < maxDepth; ++depth) {
        const std::string_view name = takeLevel(path);
        if (name.empty()) {
            break;
        }
        const auto child = folder->children.find(name);
        if (child == folder->children.end()) {
            return nullptr;
        }
        folder = &child->second;
    }
    return folder;
}

void FolderTree::total() {
    totalOf(top);
}

} // namespace olmkit
