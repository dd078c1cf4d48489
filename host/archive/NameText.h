#ifndef OLMKIT_HOST_ARCHIVE_NAMETEXT_H
#define OLMKIT_HOST_ARCHIVE_NAMETEXT_H

#include <string>
#include <string_view>

namespace olmhost {

// Returns true when no byte is above 0x7F.
bool isAscii(std::string_view text);

// Returns true when all of it is valid UTF-8.
bool isUtf8(std::string_view text);

// Returns the UTF-8 text in normal form C; unchanged when it is not valid.
std::string composedForm(std::string_view text);

} // namespace olmhost

#endif
