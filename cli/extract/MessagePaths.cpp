#include "cli/extract/MessagePaths.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "cli/files/SafeName.h"
#include "cli/rows/ItemRow.h"

namespace olmkit {

namespace {

constexpr std::string_view ending = ".msg";
constexpr std::u16string_view wideEnding = u".msg";

// What the name of a folder for attachments has in the place of the message's ending.
constexpr std::string_view attachmentsEnding = " (attachments)";

// The longest name of a message without its ending, whose folder for attachments has a name too.
constexpr std::size_t longestStem = longestName - std::max(ending.size(), attachmentsEnding.size());

// Files that this program writes beside the messages.
constexpr auto ownNames = std::to_array<std::string_view>({
    "manifest.jsonl",
    "manifest.jsonl.kept",
    "manifest.jsonl.part",
    "shard.json",
    "summary.json",
    "unfinished.json",
});

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

// A folder's name never ends as a message's or that of a folder for attachments does, nor is it, at
// the top, that of a file which this program writes there.
std::string folderName(std::u16string_view text, bool isTop) {
    std::string name = safeName(text, longestName - 1);
    const std::string folded = foldedName(name);
    if (folded.ends_with(ending) || folded.ends_with(attachmentsEnding) ||
        (isTop && std::ranges::find(ownNames, folded) != ownNames.end())) {
        name += '_';
    }
    return name;
}

std::vector<std::string> foldersOf(std::u16string_view text) {
    std::vector<std::string> folders;
    while (!text.empty()) {
        const std::size_t end = text.find(u'\0');
        const std::u16string_view level = text.substr(0, end);
        // Two slashes on end in an entry's name make no level.
        if (!level.empty()) {
            folders.push_back(folderName(level, folders.empty()));
        }
        text.remove_prefix(end == std::u16string_view::npos ? text.size() : end + 1);
    }
    return folders;
}

std::uint64_t keyOf(const MessagePath& path, std::string_view stem) {
    Hash hash;
    for (const std::string& folder : path.folders) {
        hash.add(foldedName(folder));
        hash.add("/");
    }
    hash.add(foldedName(stem));
    return hash.get();
}

} // namespace

std::string MessagePath::text() const {
    std::string whole;
    for (const std::string& folder : folders) {
        whole += folder;
        whole += '/';
    }
    return whole + file;
}

MessagePath MessagePaths::next(const olmhost::Row& row) {
    NameParts parts = nameParts(row);
    // A name of 65,536 units or more came cut, and without its ending.
    if (parts.item.ends_with(wideEnding)) {
        parts.item.remove_suffix(wideEnding.size());
    }
    MessagePath path;
    if (layout == Layout::Tree) {
        path.folders = foldersOf(parts.folder);
    }
    const std::string stem = safeName(parts.item, longestStem - numberRoom);
    return unique(std::move(path), stem);
}

std::string MessagePaths::attachmentFolder(const MessagePath& message) {
    return message.file.substr(0, message.file.size() - ending.size()) +
           std::string(attachmentsEnding);
}

MessagePath MessagePaths::ofUnlisted(std::uint32_t entry, std::uint32_t item) {
    return unique({}, "entry " + std::to_string(entry) + " item " + std::to_string(item));
}

MessagePath MessagePaths::unique(MessagePath path, const std::string& stem) {
    const std::uint64_t key = keyOf(path, stem);
    std::string free = stem;
    if (!take(key)) {
        std::uint32_t number = nextNumbers[key];
        do {
            free = stem + " (" + std::to_string(number++) + ")";
        } while (!take(keyOf(path, free)));
        nextNumbers[key] = number;
    }
    path.file = free + std::string(ending);
    return path;
}

} // namespace olmkit
