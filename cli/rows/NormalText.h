#ifndef OLMKIT_CLI_ROWS_NORMALTEXT_H
#define OLMKIT_CLI_ROWS_NORMALTEXT_H

#include <string>
#include <string_view>

namespace olmkit {

// The code points of a text in normal form C. What is no text becomes U+FFFD.
std::u32string composedText(std::string_view utf8);
std::u32string composedText(std::u16string_view text);

// A text as UTF-8 in which case and the encoding of accents make no difference any more: folded as
// Unicode has it, without regard to any language, and in normal form C.
std::string comparableText(std::string_view utf8);
std::string comparableText(std::u16string_view text);

} // namespace olmkit

#endif
