#ifndef OLMKIT_HOST_MARKUP_DOCUMENTENCODING_H
#define OLMKIT_HOST_MARKUP_DOCUMENTENCODING_H

#include <cstdint>
#include <string>
#include <string_view>

namespace olmhost {

// How the characters of a document are encoded. Saved states hold the numbers.
enum class DocumentEncoding : std::uint8_t { Utf8, Utf16Le, Utf16Be, Latin1, Ascii };

inline constexpr std::uint8_t documentEncodingCount = 5;

// Returns the encoding of a document that begins with `head` (its first two bytes, fewer when it
// has no more) and whose XML declaration names `declared` (empty when it names none).
DocumentEncoding documentEncoding(std::string_view head, std::string_view declared);

// Returns the name by which expat knows the encoding.
const char* protocolName(DocumentEncoding encoding);

// Returns ASCII text as the bytes of a document.
std::string encodeAscii(std::string_view ascii, DocumentEncoding encoding);

// Returns bytes of a document as UTF-8. Invalid bytes become some text that is not a name.
std::string decodeToUtf8(std::string_view bytes, DocumentEncoding encoding);

// Returns the bytes of an ASCII character.
inline std::uint32_t unitSize(DocumentEncoding encoding) {
    const bool wide =
        encoding == DocumentEncoding::Utf16Le || encoding == DocumentEncoding::Utf16Be;
    return wide ? 2 : 1;
}

} // namespace olmhost

#endif
