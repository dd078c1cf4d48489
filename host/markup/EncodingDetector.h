#ifndef OLMKIT_HOST_MARKUP_ENCODINGDETECTOR_H
#define OLMKIT_HOST_MARKUP_ENCODINGDETECTOR_H

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "host/markup/DocumentEncoding.h"

namespace olmhost {

// Determines the encoding of one document while it is parsed: from its first bytes and its XML
// declaration, or from a saved state, which overrides both.
class EncodingDetector {
public:
    // Prepares for another document.
    void clear() {
        head.clear();
        declared.clear();
        saved.reset();
    }

    // Takes the next bytes of a document that is read from its start.
    void addBytes(const char* bytes, std::size_t size) {
        if (head.size() < headSize) {
            head.append(bytes, std::min(size, headSize - head.size()));
        }
    }

    // Takes the name in the XML declaration; null when it names no encoding.
    void setDeclared(const char* name) { declared = name == nullptr ? "" : name; }

    // Takes the encoding that a saved state holds.
    void setSaved(DocumentEncoding encoding) { saved = encoding; }

    // Returns the encoding, as far as it is known by now.
    DocumentEncoding encoding() const { return saved ? *saved : documentEncoding(head, declared); }

private:
    static constexpr std::size_t headSize = 2; // bytes; a byte order mark, or half a character

    std::string head;
    std::string declared;
    std::optional<DocumentEncoding> saved;
};

} // namespace olmhost

#endif
