#include "cli/JsonLine.h"

#include <array>
#include <charconv>
#include <limits>

#include "cli/Text.h"

namespace olmkit {

namespace {

template <typename Number> void appendNumber(std::string& out, Number value) {
    std::array<char, std::numeric_limits<Number>::digits10 + 3> digits = {};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    out.append(digits.data(), end);
}

constexpr bool needsEscape(char32_t unit) {
    return unit < 0x20 || unit == '"' || unit == '\\';
}

template <typename Unit> constexpr bool isPlain(Unit unit) {
    const auto number = static_cast<std::make_unsigned_t<Unit>>(unit);
    return number < 0x80 && !needsEscape(number);
}

void appendEscape(std::string& out, char32_t character) {
    constexpr std::string_view hexDigits = "0123456789abcdef";
    switch (character) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\b':
        out += "\\b";
        return;
    case '\f':
        out += "\\f";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        out += "\\u00";
        out += hexDigits[character >> 4];
        out += hexDigits[character & 0xF];
    }
}

template <typename Unit> void appendText(std::string& out, std::basic_string_view<Unit> text) {
    out += '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && isPlain(text[plain])) {
            ++plain;
        }
        out.append(text.begin(), text.begin() + plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const char32_t codePoint = takeCodePoint(text);
        if (needsEscape(codePoint)) {
            appendEscape(out, codePoint);
        } else {
            appendCodePoint(out, codePoint);
        }
    }
    out += '"';
}

} // namespace

void JsonLine::number(std::string_view key, std::uint64_t value) {
    startMember(key);
    appendNumber(out, value);
}

void JsonLine::signedNumber(std::string_view key, std::int64_t value) {
    startMember(key);
    appendNumber(out, value);
}

void JsonLine::text(std::string_view key, std::u16string_view value) {
    startMember(key);
    appendText(out, value);
}

void JsonLine::text(std::string_view key, std::string_view value) {
    startMember(key);
    appendText(out, value);
}

void JsonLine::null(std::string_view key) {
    startMember(key);
    out += "null";
}

void JsonLine::end() {
    out += "}\n";
}

void JsonLine::startMember(std::string_view key) {
    out += separator;
    out += '"';
    out += key;
    out += "\":";
    separator = ',';
}

} // namespace olmkit
