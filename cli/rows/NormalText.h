#ifndef OLMKIT_CLI_ROWS_NORMALTEXT_H
#define OLMKIT_CLI_ROWS_NORMALTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// Returns the code points of a text in normal form C. Invalid units become U+FFFD.
std::u32string composedText(std::string_view utf8);
std::u32string composedText(std::u16string_view text);

// Returns UTF-8 that is equal for texts that differ only in case or in the encoding of accents:
// with Unicode's case folding, independent of the language, in normal form C.
std::string comparableText(std::string_view utf8);
std::string comparableText(std::u16string_view text);

} // namespace olmkit

#endif
