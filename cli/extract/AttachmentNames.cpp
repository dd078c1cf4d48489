#include "cli/extract/AttachmentNames.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "cli/files/SafeName.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// With its dot. A longer ending does not identify a type of file.
constexpr std::size_t maxEndingUnits = 17;

constexpr std::u16string_view namelessName = u"attachment";

std::u16string toUtf16(std::string_view text) {
    std::u16string units;
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        if (codePoint < 0x10000) {
            units += static_cast<char16_t>(codePoint);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (codePoint >> 10));
            units += static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
        }
    }
    return units;
}

std::u16string wantedName(const AttachmentRow& attachment) {
    const std::string url = attachment.url.value_or("");
    const std::size_t slash = url.find_last_of("/\\");
    const std::u16string name = toUtf16(
        !attachment.name.empty() ? attachment.name : url.substr(slash == url.npos ? 0 : slash + 1));
    return name.empty() ? std::u16string(namelessName) : name;
}

// A name in two parts; a number goes between them.
struct Parts {
    std::string stem;
    std::string ending; // with its dot, or empty
};

// Whether text is "." and the letters or digits that identify a type of file.
bool isFileEnding(std::u16string_view text) {
    return text.size() > 1 && text.size() <= maxEndingUnits &&
           std::ranges::all_of(text.substr(1), [](char16_t unit) {
               return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
                      (unit >= u'a' && unit <= u'z');
           });
}

Parts partsOf(std::u16string_view name) {
    Parts parts;
    const std::size_t dot = name.rfind(u'.');
    if (dot != std::u16string_view::npos && dot > 0 && isFileEnding(name.substr(dot))) {
        appendUtf8(parts.ending, name.substr(dot));
        name = name.substr(0, dot);
    }
    parts.stem = safeName(name, maxNameBytes - numberRoom - parts.ending.size());
    return parts;
}

} // namespace

std::vector<std::string> attachmentFileNames(const std::vector<AttachmentRow>& attachments) {
    std::vector<std::string> names;
    names.reserve(attachments.size());
    std::unordered_map<std::string, std::uint32_t> nextNumbers; // by folded name in use
    for (const AttachmentRow& attachment : attachments) {
        const Parts parts = partsOf(wantedName(attachment));
        const std::string wanted = parts.stem + parts.ending;
        const std::string key = foldedName(wanted);
        std::string name = wanted;
        if (!nextNumbers.try_emplace(key, 2).second) {
            std::uint32_t number = nextNumbers[key];
            do {
                name = parts.stem + " (" + std::to_string(number++) + ")" + parts.ending;
            } while (!nextNumbers.try_emplace(foldedName(name), 2).second);
            nextNumbers[key] = number;
        }
        names.push_back(name);
    }
    return names;
}

} // namespace olmkit
