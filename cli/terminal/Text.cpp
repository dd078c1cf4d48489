#include "cli/terminal/Text.h"

#include <algorithm>

#include <utf8proc.h>

namespace olmkit {

namespace {

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// Vowels and final consonants of Korean syllables, which share the cells of the consonant before
// them.
constexpr bool isJoinedJamo(char32_t codePoint) {
    return (codePoint >= 0x1160 && codePoint < 0x1200) ||
           (codePoint >= 0xD7B0 && codePoint < 0xD800);
}

constexpr char32_t firstPicture = 0x1F000; // signs from here on take two cells

} // namespace

char32_t takeCodePoint(std::u16string_view& text) {
    const char32_t first = text.front();
    text.remove_prefix(1);
    if (!isHighSurrogate(first)) {
        return isLowSurrogate(first) ? replacementCharacter : first;
    }
    if (text.empty() || !isLowSurrogate(text.front())) {
        return replacementCharacter;
    }
    const char32_t second = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

char32_t takeCodePoint(std::string_view& text) {
    utf8proc_int32_t codePoint = 0;
    const utf8proc_ssize_t taken =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                         static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    if (taken <= 0) {
        text.remove_prefix(1);
        return replacementCharacter;
    }
    text.remove_prefix(static_cast<std::size_t>(taken));
    return static_cast<char32_t>(codePoint);
}

void appendCodePoint(std::string& out, char32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

void appendUtf8(std::string& out, std::u16string_view text) {
    while (!text.empty()) {
        // Most text is ASCII over long stretches.
        const auto stop = std::ranges::find_if(text, [](char16_t unit) { return unit >= 0x80; });
        out.append(text.begin(), stop);
        text.remove_prefix(static_cast<std::size_t>(stop - text.begin()));
        while (!text.empty() && text.front() >= 0x80) {
            appendCodePoint(out, takeCodePoint(text));
        }
    }
}

bool isControl(char32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
           codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
           (codePoint >= 0x2066 && codePoint <= 0x2069);
}

bool isDirectionMark(char32_t codePoint) {
    return codePoint == 0x061C || codePoint == 0x200E || codePoint == 0x200F;
}

void appendEscaped(std::string& out, std::string_view json) {
    constexpr std::string_view digits = "0123456789abcdef";
    while (!json.empty()) {
        // JSON itself is ASCII, and has escapes for the control characters below U+007F.
        const auto stop = std::ranges::find_if(
            json, [](char unit) { return static_cast<unsigned char>(unit) >= 0x7F; });
        out.append(json.begin(), stop);
        json.remove_prefix(static_cast<std::size_t>(stop - json.begin()));
        if (json.empty()) {
            return;
        }
        const char32_t codePoint = takeCodePoint(json);
        if (!isControl(codePoint) && !isDirectionMark(codePoint)) {
            appendCodePoint(out, codePoint);
            continue;
        }
        out += "\\u"; // all of them are below U+10000
        for (int shift = 12; shift >= 0; shift -= 4) {
            out += digits[(codePoint >> shift) & 0xF];
        }
    }
}

void appendPrintable(std::string& out, std::string_view text, DirectionMarks marks) {
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        if (marks == DirectionMarks::Dropped && isDirectionMark(codePoint)) {
            continue;
        }
        if (!isControl(codePoint)) {
            appendCodePoint(out, codePoint);
        } else if ((codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x85 ||
                   codePoint == 0x2028 || codePoint == 0x2029) {
            out += ' ';
        } else {
            appendCodePoint(out, replacementCharacter);
        }
    }
}

unsigned cellWidth(char32_t codePoint) {
    if (isJoinedJamo(codePoint)) {
        return 0;
    }
    const auto character = static_cast<utf8proc_int32_t>(codePoint);
    const utf8proc_category_t category = utf8proc_category(character);
    if (category == UTF8PROC_CATEGORY_MC) {
        return 1;
    }
    if (category == UTF8PROC_CATEGORY_CN && codePoint >= firstPicture) {
        return 2; // a sign newer than the library
    }
    const int width = utf8proc_charwidth(character);
    return width < 0 ? 0 : static_cast<unsigned>(width);
}

} // namespace olmkit
