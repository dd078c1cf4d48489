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

// One document, pulled tag by tag: what stands behind the UTXML functions.
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

    // An attribute in UTF-16, both texts with a 0 unit behind the count.
    struct Attribute {
        const std::uint16_t* name;
        const std::uint16_t* value;
        std::uint32_t nameLength;
        std::uint32_t valueLength;
    };

    // The stream is borrowed until close(). It stands at its start.
    void open(Handle& document);
    void close();

    TagMaps tagMaps;

    // The next tag. TextPending comes once for each text that is unread in whole or part. At the
    // End `tag` and `place` stay as they were, and a fault is reported to the stream once.
    Step nextTag(UTXMLTagRecord& tag, std::uint64_t& place);

    // The next attribute of the tag read last, in the document's order; false when none is left.
    // The texts stand until the next call of anything.
    bool nextAttribute(Attribute& attribute);

    // The next units of the text directly behind the opening tag read last. Fewer than `capacity`
    // only at the end of the text. Empty when there is none, or no more.
    std::optional<std::uint32_t> readText(std::uint16_t* units, std::uint32_t capacity);

    // Leaves out what is unread of that text.
    void skipText();

    // Goes behind the closing tag of an element that this reader has opened. False when that
    // element isn't open, or the document ends first. Elements that were open where restore() led
    // count as never opened, but for the root.
    bool skipElement(const UTXMLTagRecord& opening);

    void save(tagUTXMLSaveData& block) const;
    // False when no reader has filled the block, or the stream can't be moved there.
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
    SavedState currentPlace() const;

    Handle* stream = nullptr; // borrowed
    MarkupParser parser;
    std::vector<OpenElement> elements; // open ones, root first
    std::optional<OpenElement> root;   // when its opening tag was delivered
    std::uint32_t lastSerial = 0;

    // The tag read last, in the terms of SavedState.
    std::uint64_t lastPlace = 0;
    bool isAfterOpening = false;
    bool isSelfClosed = false;

    // The text behind it.
    bool isTextDone = true;       // there is none, or no more
    bool isTextTold = false;      // TextPending was given
    std::uint64_t textRead = 0;   // units that were read
    std::uint64_t textToPass = 0; // units that were read before restore()
    TextUnits textUnits;

    std::vector<std::uint16_t> attributeUnits;
    bool isFaultReported = false;
    bool isLost = false; // restore() has failed
};

} // namespace olmhost

#endif
