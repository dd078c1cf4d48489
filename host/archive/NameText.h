#ifndef OLMKIT_HOST_ARCHIVE_NAMETEXT_H
#define OLMKIT_HOST_ARCHIVE_NAMETEXT_H

#include <string>
#include <string_view>

namespace olmhost {

// True when no byte is above 0x7F.
bool isAscii(std::string_view text);

// True when all of it is valid UTF-8.
bool isUtf8(std::string_view text);

// The text in normal form C, from UTF-8 to UTF-8; unchanged when it is not valid.
std::string composedForm(std::string_view text);

} // namespace olmhost

#endif
