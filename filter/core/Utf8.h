#ifndef OLMKIT_FILTER_CORE_UTF8_H
#define OLMKIT_FILTER_CORE_UTF8_H

#include <cstdint>
#include <string>

namespace qor {

// Replaces invalid text.
inline constexpr char32_t replacementCharacter = 0xFFFD;

// Reads one code point and moves `position` past it. A maximal invalid sequence is read as one
// U+FFFD. REQUIRES: `position` is before `end`.
char32_t readUtf8(const char*& position, const char* end);

// Writes a code point as one or two 16-bit units. Returns their number.
int writeUtf16(char32_t codePoint, uint16_t* units);

// Reads one code point and moves `position` past it. A lone surrogate is read as U+FFFD. REQUIRES:
// `position` is before `end`.
char32_t readUtf16(const uint16_t*& position, const uint16_t* end);

// Appends a code point as one to four bytes.
void appendUtf8(std::string& text, char32_t codePoint);

} // namespace qor

#endif
