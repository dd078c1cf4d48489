#include "cli/extract/MessagePaths.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/files/SafeName.h"
#include "cli/manifest/RunFiles.h"
#include "cli/rows/ItemRow.h"

namespace olmkit {

namespace {

constexpr std::string_view ending = ".msg";
constexpr std::u16string_view wideEnding = u".msg";

// Replaces `ending` in the name of a message's folder for attachments.
constexpr std::string_view attachmentsEnding = " (attachments)";

// A message's name without its ending leaves room for either ending.
constexpr std::size_t maxStemBytes =
    maxNameBytes - std::max(ending.size(), attachmentsEnding.size());

// 64-bit FNV-1a: the same on every machine.
class Hash {
public:
    void add(std::string_view text) {
        for (const char character : text) {
            value = (value ^ static_cast<unsigned char>(character)) * 0x100000001B3;
        }
    }
    std::uint64_t get() const { return value; }

private:
    std::uint64_t value = 0xCBF29CE484222325;
};

// Returns a folder name that can't be taken for a message, a folder for attachments or, at the top,
// a file of the run.
std::string folderName(std::u16string_view text, bool isTop) {
    std::string name = safeName(text, maxNameBytes - 1);
    const std::string folded = foldedName(name);
    if (folded.ends_with(ending) || folded.ends_with(attachmentsEnding) ||
        (isTop && isRunFile(folded))) {
        name += '_';
    }
    return name;
}

std::vector<std::string> foldersOf(std::u16string_view text) {
    std::vector<std::string> folders;
    while (!text.empty()) {
        const std::size_t end = text.find(u'\0');
        const std::u16string_view level = text.substr(0, end);
        // Two slashes in a row in an entry's name make no level.
        if (!level.empty()) {
            folders.push_back(folderName(level, folders.empty()));
        }
        text.remove_prefix(end == std::u16string_view::npos ? text.size() : end + 1);
    }
    return folders;
}

std::uint64_t pathHash(const OutputPath& path, std::string_view stem) {
    Hash hash;
    for (const std::string& folder : path.folders) {
        hash.add(foldedName(folder));
        hash.add("/");
    }
    hash.add(foldedName(stem));
    return hash.get();
}

} // namespace

OutputPath MessagePaths::next(const olmhost::Row& row) {
    NameParts parts = nameParts(row);
    // A name of 65,536 units or more was cut by the module and has no ending.
    if (parts.item.ends_with(wideEnding)) {
        parts.item.remove_suffix(wideEnding.size());
    }
    OutputPath path;
    if (layout == Layout::Tree) {
        path.folders = foldersOf(parts.folder);
    }
    const std::string stem = safeName(parts.item, maxStemBytes - numberRoom);
    return unique(std::move(path), stem);
}

std::string MessagePaths::attachmentFolder(const OutputPath& message) {
    return message.file.substr(0, message.file.size() - ending.size()) +
           std::string(attachmentsEnding);
}

OutputPath MessagePaths::ofUnlisted(std::uint32_t entry, std::uint32_t item) {
    return unique({}, "entry " + std::to_string(entry) + " item " + std::to_string(item));
}

OutputPath MessagePaths::unique(OutputPath path, const std::string& stem) {
    const std::uint64_t key = pathHash(path, stem);
    std::string free = stem;
    if (!take(key)) {
        std::uint32_t number = nextNumbers[key];
        do {
            free = stem + " (" + std::to_string(number++) + ")";
        } while (!take(pathHash(path, free)));
        nextNumbers[key] = number;
    }
    path.file = free + std::string(ending);
    return path;
}

} // namespace olmkit
