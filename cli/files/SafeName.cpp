#include "cli/files/SafeName.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <utf8proc.h>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr char substitute = '_';
constexpr std::u32string_view reservedCharacters = U"<>:\"/\\|?*";

// Names of devices on Windows, in lower case. Anything after a dot doesn't change that.
// clang-format off
constexpr auto deviceNames = std::to_array<std::string_view>({
    "con", "prn", "aux", "nul", "conin$", "conout$",
    "com0", "com1", "com2", "com3", "com4", "com5", "com6", "com7", "com8", "com9",
    "com\u00B9", "com\u00B2", "com\u00B3",
    "lpt0", "lpt1", "lpt2", "lpt3", "lpt4", "lpt5", "lpt6", "lpt7", "lpt8", "lpt9",
    "lpt\u00B9", "lpt\u00B2", "lpt\u00B3",
});
// clang-format on

bool isNonCharacter(char32_t codePoint) {
    return (codePoint & 0xFFFE) == 0xFFFE || (codePoint >= 0xFDD0 && codePoint <= 0xFDEF);
}

bool isUnsafe(char32_t codePoint) {
    return isControl(codePoint) || isNonCharacter(codePoint) || codePoint == replacementCharacter ||
           reservedCharacters.find(codePoint) != std::u32string_view::npos;
}

bool isDeviceName(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::ranges::transform(stem, stem.begin(), lowerAscii);
    return std::ranges::find(deviceNames, stem) != deviceNames.end();
}

// Shortens to `maxBytes` bytes, between two code points, and never between a letter and its marks.
void shorten(std::string& name, std::size_t maxBytes) {
    if (name.size() <= maxBytes) {
        return;
    }
    std::string_view rest = name;
    std::size_t end = 0;
    while (name.size() - rest.size() <= maxBytes) {
        std::string_view next = rest;
        if (cellWidth(takeCodePoint(next)) > 0) {
            end = name.size() - rest.size();
        }
        rest = next;
    }
    name.erase(end == 0 ? maxBytes : end);
}

void trimEnd(std::string& name) {
    name.erase(name.find_last_not_of(". ") + 1);
}

} // namespace

std::string safeName(std::u16string_view text, std::size_t maxBytes) {
    std::string name;
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        if (isUnsafe(codePoint)) {
            name += substitute;
        } else {
            appendCodePoint(name, codePoint);
        }
    }
    trimEnd(name);
    if (name.empty()) {
        name = substitute;
    }
    if (name.front() == '.') {
        name.front() = substitute;
    }
    if (isDeviceName(name)) {
        name.insert(name.begin(), substitute);
    }
    shorten(name, maxBytes);
    trimEnd(name);
    return name;
}

std::string foldedName(std::string_view name) {
    if (std::ranges::all_of(name, [](char character) { return (character & 0x80) == 0; })) {
        std::string folded(name);
        std::ranges::transform(folded, folded.begin(), lowerAscii);
        return folded;
    }
    utf8proc_uint8_t* mapped = nullptr;
    const auto options = static_cast<utf8proc_option_t>(
        UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_COMPAT | UTF8PROC_CASEFOLD | UTF8PROC_IGNORE);
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(name.data()),
                     static_cast<utf8proc_ssize_t>(name.size()), &mapped, options);
    std::string folded = length < 0 ? std::string(name)
                                    : std::string(reinterpret_cast<const char*>(mapped),
                                                  static_cast<std::size_t>(length));
    std::free(mapped);
    return folded;
}

} // namespace olmkit
