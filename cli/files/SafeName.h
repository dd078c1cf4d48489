#ifndef OLMKIT_CLI_FILES_SAFENAME_H
#define OLMKIT_CLI_FILES_SAFENAME_H

#include <cstddef>
#include <string>
#include <string_view>

namespace olmkit {

// The longest name of a file or folder that every file system takes, in bytes of UTF-8.
inline constexpr std::size_t longestName = 255;

// Bytes that a name leaves for " (4294967295)", which tells it from others of its folder.
inline constexpr std::size_t numberRoom = 13;

// Turns any text into a name that Linux, macOS and Windows take for a file or a folder: never
// empty, no path, no reserved character or device name, no control, no dot in front, no dot or
// space behind, at most `longest` bytes and no code point cut in two. UTF-8.
std::string safeName(std::u16string_view text, std::size_t longest);

// The form in which two names are the same on a file system that takes no notice of case, of
// normal forms and of characters that can't be seen.
std::string foldedName(std::string_view name);

} // namespace olmkit

#endif
