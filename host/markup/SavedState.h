#ifndef OLMKIT_HOST_MARKUP_SAVEDSTATE_H
#define OLMKIT_HOST_MARKUP_SAVEDSTATE_H

#include <array>
#include <cstdint>
#include <type_traits>

#include "filter/boundary/Reader.h"
#include "host/markup/DocumentEncoding.h"

namespace olmhost {

// The contents of a saved state. It depends on the document alone, so any later reader of the same
// document can restore it; all zero is the state before the first tag.
//
// The names of the open elements are held as hashes: enough to check a closing tag. When there are
// too many of them, or a document type declaration may have added tags that are nowhere in the
// bytes, a reader gets there by reading from the start.
struct SavedState {
    static constexpr std::size_t maxNames = 7;

    // Bits of `flags`.
    static constexpr std::uint8_t AfterOpening = 1;  // the tag read last opens an element ...
    static constexpr std::uint8_t SelfClosed = 2;    // ... and is its closing tag too
    static constexpr std::uint8_t TextAnnounced = 4; // its unread text was announced
    static constexpr std::uint8_t TextDone = 8;      // its text is at its end
    static constexpr std::uint8_t ByCount = 16;      // `place` counts tags
    static constexpr std::uint8_t knownFlags = 31;

    // Bytes from the start of the document to the end of the tag read last; to its begin when
    // SelfClosed. ByCount: tags read so far.
    std::uint64_t place = 0;
    std::uint64_t textRead = 0; // UTF-16 units of the text after the tag that were read
    std::uint16_t depth = 0;    // open elements, the self-closed one left out
    DocumentEncoding encoding = DocumentEncoding::Utf8;
    std::uint8_t flags = 0;
    std::array<std::uint32_t, maxNames> names{}; // nameHash() of the open elements, root first

    static SavedState from(const tagUTXMLSaveData& block);
    void store(tagUTXMLSaveData& block) const;

    bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
    bool isStart() const { return place == 0 && flags == 0; }
    bool needsReplay() const {
        return has(ByCount) || depth > maxNames || (has(SelfClosed) && depth == 0);
    }

    // Returns false for a block that no reader has filled.
    bool isValid() const;

    bool operator==(const SavedState&) const = default;
};

static_assert(sizeof(SavedState) == sizeof(tagUTXMLSaveData));
static_assert(std::is_trivially_copyable_v<SavedState>);

} // namespace olmhost

#endif
