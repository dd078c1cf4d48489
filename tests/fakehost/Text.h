#ifndef OLMKIT_TESTS_FAKEHOST_TEXT_H
#define OLMKIT_TESTS_FAKEHOST_TEXT_H

#include <string>
#include <string_view>

namespace fakehost {

// Text of a script in 16-bit units, made from UTF-16 or, for convenience, from UTF-8.
struct Text {
    std::u16string units;

    Text() = default;
    Text(const char* utf8);
    Text(const std::string& utf8);
    Text(const char16_t* utf16) : units(utf16) {}
    Text(std::u16string utf16) : units(std::move(utf16)) {}
};

// Returns 16-bit units as UTF-8; a lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view units);
std::u16string toUtf16(std::string_view utf8);

// Like toUtf8(), in double quotes, with \0 for a 0 unit and \" for a quote: the form of call texts.
std::string inQuotes(std::u16string_view units);

// Returns `count` units that differ from their neighbours, so that a shifted or repeated chunk
// shows.
std::u16string patternText(size_t count);

} // namespace fakehost

#endif
