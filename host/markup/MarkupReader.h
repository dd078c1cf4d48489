#ifndef OLMKIT_HOST_MARKUP_MARKUPREADER_H
#define OLMKIT_HOST_MARKUP_MARKUPREADER_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "filter/boundary/Reader.h"
#include "host/markup/MarkupParser.h"
#include "host/markup/TagMaps.h"
#include "host/markup/TextUnits.h"

namespace olmhost {

// One document, read tag by tag: the implementation of the UTXML functions.
//
// Order of calls: open(), anything, close(); then open() with the next document. An object keeps
// its buffers from document to document. One thread at a time.
class MarkupReader {
public:
    enum class Step {
        Tag,         // a tag was read
        TextPending, // text of the element is unread; no tag was read
        End,         // no more tags, or the document is broken
    };

    // An attribute in UTF-16. Both texts have a 0 unit after their last one.
    struct Attribute {
        const std::uint16_t* name;
        const std::uint16_t* value;
        std::uint32_t nameLength;
        std::uint32_t valueLength;
    };

    // The stream is borrowed until close(). It is at its start.
    void open(Handle& document);
    void close();

    TagMaps tagMaps;

    // Reads the next tag. Returns TextPending once for each text that is unread in whole or part.
    // At the End `tag` and `place` stay as they were, and a fault is reported to the stream once.
    Step nextTag(UTXMLTagRecord& tag, std::uint64_t& place);

    // Reads the next attribute of the tag read last, in the document's order. Returns false when
    // none is left. The texts are valid until the next call of any function.
    bool nextAttribute(Attribute& attribute);

    // Reads units of the text directly after the opening tag read last. Returns how many; fewer
    // than `capacity` only at the end of the text. Empty when there is no text, or no more.
    std::optional<std::uint32_t> readText(std::uint16_t* units, std::uint32_t capacity);

    // Skips what is unread of that text.
    void skipText();

    // Skips to the end of an element that this reader has opened. Returns false when that element
    // isn't open, or the document ends first. Elements that were open at restore() count as never
    // opened, except the root.
    bool skipElement(const UTXMLTagRecord& opening);

    // Stores the saved state of the current position.
    void save(tagUTXMLSaveData& block) const;
    // Continues from a saved state. Returns false when no reader has filled the block, or the
    // stream can't be moved there.
    bool restore(const tagUTXMLSaveData& block);

private:
    struct OpenElement {
        std::uint32_t nameHash;
        std::uint32_t id;
        std::uint32_t serial; // 0: this reader has never delivered its opening tag
    };

    const MarkupEvent& peek();
    bool hasText();
    bool hasQueuedText();
    std::size_t takeUnits(std::uint16_t* units, std::size_t capacity);
    void passReadText();
    void deliverOpening(UTXMLTagRecord& tag);
    void deliverClosing(UTXMLTagRecord& tag);
    void reportFault();
    SavedState currentState() const;

    Handle* stream = nullptr; // borrowed
    MarkupParser parser;
    std::vector<OpenElement> elements; // open ones, root first
    std::optional<OpenElement> root;   // when its opening tag was delivered
    std::uint32_t lastSerial = 0;

    // The tag read last, as in SavedState.
    std::uint64_t lastPlace = 0;
    bool isAfterOpening = false;
    bool isSelfClosed = false;

    // The text after it.
    bool isTextDone = true;       // there is none, or no more
    bool isTextAnnounced = false; // TextPending was returned
    std::uint64_t textRead = 0;   // units that were read
    std::uint64_t textToPass = 0; // units that were read before restore()
    TextUnits textUnits;

    std::vector<std::uint16_t> attributeUnits;
    bool isFaultReported = false;
    bool isLost = false; // restore() has failed
};

} // namespace olmhost

#endif
