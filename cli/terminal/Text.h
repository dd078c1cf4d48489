#ifndef OLMKIT_CLI_TERMINAL_TEXT_H
#define OLMKIT_CLI_TERMINAL_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace olmkit {

inline constexpr char32_t replacementCharacter = 0xFFFD;

// Takes one code point off the front of UTF-16 text that is not empty. A lone surrogate gives
// replacementCharacter.
char32_t takeCodePoint(std::u16string_view& text);

// Takes one code point off the front of UTF-8 text that is not empty. Each byte that begins no
// code point gives replacementCharacter.
char32_t takeCodePoint(std::string_view& text);

// Returns the lower-case letter of an upper-case ASCII letter, and any other byte as it is.
constexpr char lowerAscii(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Appends a code point as UTF-8.
void appendCodePoint(std::string& out, char32_t codePoint);

// Appends UTF-16 text as UTF-8.
void appendUtf8(std::string& out, std::u16string_view text);

// Whether a code point may act on a terminal or turn text round: controls, line and paragraph
// separators, marks that set the direction of what follows.
bool isControl(char32_t codePoint);

// Appends UTF-8 text with every control replaced: white space by a space, others by
// replacementCharacter.
void appendPrintable(std::string& out, std::string_view text);

// Terminal cells that a code point takes: 0, 1 or 2.
unsigned cellWidth(char32_t codePoint);

} // namespace olmkit

#endif
