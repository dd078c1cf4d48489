#ifndef OLMKIT_CLI_TERMINAL_TEXT_H
#define OLMKIT_CLI_TERMINAL_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace olmkit {

inline constexpr char32_t replacementCharacter = 0xFFFD;

// Removes the first code point of UTF-16 text, which must not be empty, and returns it. Returns
// replacementCharacter for a lone surrogate.
char32_t takeCodePoint(std::u16string_view& text);

// Removes the first code point of UTF-8 text, which must not be empty, and returns it. Removes one
// byte and returns replacementCharacter where no valid code point begins.
char32_t takeCodePoint(std::string_view& text);

// Returns the lower-case letter of an upper-case ASCII letter, and any other byte as it is.
constexpr char lowerAscii(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Appends a code point as UTF-8.
void appendCodePoint(std::string& out, char32_t codePoint);

// Appends UTF-16 text as UTF-8, a lone surrogate as replacementCharacter.
void appendUtf8(std::string& out, std::u16string_view text);

// Returns whether a code point may act on a terminal or change the direction of text: controls,
// line and paragraph separators, directional marks.
bool isControl(char32_t codePoint);

// Returns whether a code point gives the letters next to it a direction and is invisible itself:
// U+061C, U+200E, U+200F. Texts in Arabic or Hebrew have them for good reasons, so names, tables
// and pages keep them.
bool isDirectionMark(char32_t codePoint);

enum class DirectionMarks { Kept, Dropped };

// Appends UTF-8 text with every control character replaced: white space by a space, others by
// replacementCharacter.
void appendPrintable(std::string& out, std::string_view text,
                     DirectionMarks marks = DirectionMarks::Kept);

// Appends JSON text in UTF-8 with every control character and direction mark in its strings as an
// escape, "\u009b": the value is the same, and a terminal doesn't obey it.
void appendEscaped(std::string& out, std::string_view json);

// Returns the width of a code point in terminal cells: 0, 1 or 2.
unsigned cellWidth(char32_t codePoint);

} // namespace olmkit

#endif
