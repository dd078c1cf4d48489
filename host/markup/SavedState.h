#ifndef OLMKIT_HOST_MARKUP_SAVEDSTATE_H
#define OLMKIT_HOST_MARKUP_SAVEDSTATE_H

#include <array>
#include <cstdint>
#include <type_traits>

#include "filter/boundary/Reader.h"
#include "host/markup/DocumentEncoding.h"

namespace olmhost {

// What a saved reader state says. It depends on the document alone, so any later reader of the
// same document can be put there; all zero is the place before the first tag.
//
// The names of the open elements are held as hashes: enough to tell whether a closing tag is the
// right one. Where they don't fit, and where a document type declaration may have brought in
// tags that stand nowhere in the bytes, a reader gets there by reading from the start.
struct SavedState {
    static constexpr std::size_t mostNames = 7;

    // Bits of `flags`.
    static constexpr std::uint8_t AfterOpening = 1; // the tag read last opens an element ...
    static constexpr std::uint8_t SelfClosed = 2;   // ... and is its closing tag too
    static constexpr std::uint8_t TextTold = 4;     // its text was announced as unread
    static constexpr std::uint8_t TextDone = 8;     // its text is over
    static constexpr std::uint8_t ByCount = 16;     // `place` counts tags
    static constexpr std::uint8_t knownFlags = 31;

    // Bytes from the start of the document: to behind the tag read last, to its begin when
    // SelfClosed. ByCount: tags read so far.
    std::uint64_t place = 0;
    std::uint64_t textRead = 0; // units of the text behind the tag that were read
    std::uint16_t depth = 0;    // open elements, the self-closed one left out
    DocumentEncoding encoding = DocumentEncoding::Utf8;
    std::uint8_t flags = 0;
    std::array<std::uint32_t, mostNames> names{}; // nameHash() of the open elements, root first

    static SavedState from(const tagUTXMLSaveData& block);
    void store(tagUTXMLSaveData& block) const;

    bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
    bool isStart() const { return place == 0 && flags == 0; }
    bool needsReplay() const {
        return has(ByCount) || depth > mostNames || (has(SelfClosed) && depth == 0);
    }

    // False for a block that no reader has filled.
    bool isValid() const;

    bool operator==(const SavedState&) const = default;
};

static_assert(sizeof(SavedState) == sizeof(tagUTXMLSaveData));
static_assert(std::is_trivially_copyable_v<SavedState>);

} // namespace olmhost

#endif
