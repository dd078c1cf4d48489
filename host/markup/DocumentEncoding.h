#ifndef OLMKIT_HOST_MARKUP_DOCUMENTENCODING_H
#define OLMKIT_HOST_MARKUP_DOCUMENTENCODING_H

#include <cstdint>
#include <string>
#include <string_view>

namespace olmhost {

// How the characters of a document are written. The numbers stand in saved places.
enum class DocumentEncoding : std::uint8_t { Utf8, Utf16Le, Utf16Be, Latin1, Ascii };

inline constexpr std::uint8_t documentEncodingCount = 5;

// The encoding of a document that begins with `head` (its first two bytes, fewer when it has no
// more) and whose XML declaration names `declared` (empty when it names none).
DocumentEncoding documentEncoding(std::string_view head, std::string_view declared);

// The name by which expat is told an encoding from outside the document.
const char* protocolName(DocumentEncoding encoding);

// ASCII text as it stands in a document.
std::string encodeAscii(std::string_view ascii, DocumentEncoding encoding);

// Bytes of a document as UTF-8. Bytes that stand for no character give some text that no name has.
std::string decodeToUtf8(std::string_view bytes, DocumentEncoding encoding);

// Bytes of an ASCII character.
inline std::uint32_t unitSize(DocumentEncoding encoding) {
    const bool wide =
        encoding == DocumentEncoding::Utf16Le || encoding == DocumentEncoding::Utf16Be;
    return wide ? 2 : 1;
}

} // namespace olmhost

#endif
