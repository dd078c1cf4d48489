#ifndef OLMKIT_CLI_FILES_SAFENAME_H
#define OLMKIT_CLI_FILES_SAFENAME_H

#include <cstddef>
#include <string>
#include <string_view>

namespace olmkit {

// The longest file name that every file system takes, in bytes of UTF-8.
inline constexpr std::size_t maxNameBytes = 255;

// Bytes that a name leaves for " (4294967295)", which sets it apart from equal names.
inline constexpr std::size_t numberRoom = 13;

// Returns a name in UTF-8 that Linux, macOS and Windows take for a file or folder: not empty, no
// path, no reserved character, device name or control character, no leading dot, no trailing dot or
// space, at most `maxBytes` bytes, no code point cut in two.
std::string safeName(std::u16string_view text, std::size_t maxBytes);

// Returns a key that is the same for two names that some file system takes for one name: case,
// normal forms and invisible characters make no difference.
std::string foldedName(std::string_view name);

} // namespace olmkit

#endif
