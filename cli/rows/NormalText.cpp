#include "cli/rows/NormalText.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include <utf8proc.h>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr char32_t firstNonAscii = 0x80;

template <typename Unit> bool isAscii(std::basic_string_view<Unit> text) {
    return std::ranges::all_of(text, [](Unit unit) {
        return static_cast<std::make_unsigned_t<Unit>>(unit) < firstNonAscii;
    });
}
template <> bool isAscii(std::u16string_view text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < firstNonAscii; });
}

// Returns valid UTF-8. Normalizing sorts the marks after a letter in time proportional to the
// square of their number, so long runs are split (Unicode's Stream-Safe Text Format, UAX #15).
template <typename Unit> std::string validUtf8(std::basic_string_view<Unit> text) {
    constexpr unsigned maxMarks = 30;
    constexpr char32_t joiner = 0x034F; // COMBINING GRAPHEME JOINER: invisible, ends a run
    std::string out;
    out.reserve(text.size());
    unsigned marks = 0;
    while (!text.empty()) {
        const char32_t codePoint = takeCodePoint(text);
        const auto* property = utf8proc_get_property(static_cast<utf8proc_int32_t>(codePoint));
        marks = property->combining_class == 0 ? 0 : marks + 1;
        if (marks > maxMarks) {
            appendCodePoint(out, joiner);
            marks = 1;
        }
        appendCodePoint(out, codePoint);
    }
    return out;
}

template <typename Unit>
std::string normalized(std::basic_string_view<Unit> text, unsigned int options) {
    const std::string utf8 = validUtf8(text);
    utf8proc_uint8_t* mapped = nullptr;
    const utf8proc_ssize_t size =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(utf8.data()),
                     static_cast<utf8proc_ssize_t>(utf8.size()), &mapped,
                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | options));
    if (size < 0) {
        throw std::bad_alloc(); // the only failure that is possible for valid text
    }
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, std::free);
    return {reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(size)};
}

template <typename Unit> std::u32string composed(std::basic_string_view<Unit> text) {
    if (isAscii(text)) {
        return {text.begin(), text.end()};
    }
    const std::string utf8 = normalized(text, 0);
    std::u32string out;
    for (std::string_view rest = utf8; !rest.empty();) {
        out += takeCodePoint(rest);
    }
    return out;
}

template <typename Unit> std::string comparable(std::basic_string_view<Unit> text) {
    if (!isAscii(text)) {
        return normalized(text, UTF8PROC_CASEFOLD);
    }
    std::string out(text.size(), '\0');
    std::ranges::transform(text, out.begin(),
                           [](Unit unit) { return lowerAscii(static_cast<char>(unit)); });
    return out;
}

} // namespace

std::u32string composedText(std::string_view utf8) {
    return composed(utf8);
}

std::u32string composedText(std::u16string_view text) {
    return composed(text);
}

std::string comparableText(std::string_view utf8) {
    return comparable(utf8);
}

std::string comparableText(std::u16string_view text) {
    return comparable(text);
}

} // namespace olmkit
