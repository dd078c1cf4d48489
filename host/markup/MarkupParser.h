#ifndef OLMKIT_HOST_MARKUP_MARKUPPARSER_H
#define OLMKIT_HOST_MARKUP_MARKUPPARSER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/markup/DocumentEncoding.h"
#include "host/markup/EventQueue.h"
#include "host/markup/SavedState.h"
#include "host/stream/Handle.h"

struct XML_ParserStruct;

namespace olmhost {

// Turns the bytes of one document into events, a chunk at a time.
//
// Order of calls: open(), then fill() whenever the queue has run empty (or holds white space of
// which it isn't known yet whether it is text), startAt() at any time, close(). Chunks are small
// at first, since often one item is all that is wanted, and double.
//
// An event's place is the count of bytes from the document's start to behind its tag; in a
// document with a type declaration, where tags may come out of entities, it is the count of tags.
//
// To go on in the middle, expat gets made-up tags for the open elements ahead of the document's
// bytes. Their closing tags then don't match: each is compared with the hash of the real name,
// and parsing starts again behind it with one made-up tag fewer.
class MarkupParser {
public:
    MarkupParser() = default;
    MarkupParser(const MarkupParser&) = delete;
    MarkupParser& operator=(const MarkupParser&) = delete;
    ~MarkupParser() = default;

    // Begins with a document; the stream is borrowed until close(). Reads nothing yet.
    void open(Handle& document);
    void close();

    // Goes on behind the tag that a place was saved at. False when the stream can't be moved or
    // the document has no such tag; the queue then holds the End alone.
    bool startAt(const SavedState& saved);

    // Parses one more chunk. Adds End, once, when nothing more can come.
    void fill();
    EventQueue queue;

    // Leaves out the rest of the text that is being read.
    void skipText();
    // Leaves out all tags up to the closing one after which fewer than `elements` are open.
    void skipUntilFewerThan(std::uint32_t elements);

    // Hashes of the names of the elements that are open where startAt() went; root first.
    std::span<const std::uint32_t> elementsAtStart() const { return openAtStart; }

    DocumentEncoding encoding() const;
    bool countsTags() const { return hasTypeDeclaration; }

    struct Fault {
        FaultKind kind;
        std::string text; // "line L, column C: reason"
    };
    // What is wrong with the document, once the End is there. Null when nothing is.
    const Fault* fault() const { return found ? &*found : nullptr; }

private:
    struct ParserDelete {
        void operator()(XML_ParserStruct* parser) const;
    };
    struct Handlers;

    void startFromBegin();
    void startInMiddle(std::uint64_t place);
    void prepareExpat(const char* protocolEncoding);
    void installHandlers();
    bool parseChunk();
    std::uint32_t readChunk(char* buffer);
    std::optional<std::string> readTo(char last, std::uint64_t place);
    void handleError();
    void closeUnseenElement();
    void lookAtPending();

    void onOpening(const char* name, const char** attributes);
    void onClosing(const char* name);
    void onText(const char* bytes, std::size_t size);
    void closed(std::string_view name, std::uint64_t place);
    void beginRun(bool behindOpening);
    bool passesTarget(EventKind kind, std::uint64_t begin, std::uint64_t place);
    bool isWithinLimits(std::uint64_t tagLength);
    void pauseWhenFull();
    std::uint64_t currentPlace() const;

    void stop(FaultKind kind, const std::string& reason, std::uint64_t ahead = 0);
    void noteFault(FaultKind kind, const std::string& reason, std::uint64_t ahead = 0);

    Handle* stream = nullptr;  // borrowed
    TagWatch* watch = nullptr; // borrowed; not null while the document is read from its start on
    std::unique_ptr<XML_ParserStruct, ParserDelete> parser;
    std::optional<Fault> found;

    // Feeding.
    std::uint64_t base = 0;    // place of expat's byte 0; wraps below 0 by the made-up tags
    std::uint64_t fed = 0;     // bytes that expat got, the made-up tags included
    std::uint64_t settled = 0; // of these, how many lie ahead of what expat waits to complete
    std::uint64_t total = 0;   // bytes read since open()
    std::uint32_t chunkSize = 0;
    bool isLast = false;            // expat has been told that no more bytes come
    bool isPaused = false;          // expat waits amid a chunk, since the queue was full
    std::size_t fullWeight = 0;     // of the queue; there expat pauses
    bool isAtUnseenClosing = false; // expat refused a closing tag; see closeUnseenElement()
    bool atDocumentBegin = true;    // expat has seen the document from its start

    // Encoding.
    std::string head; // the document's first bytes, two at most
    std::string declaredEncoding;
    std::optional<DocumentEncoding> knownEncoding; // from a saved place

    // Elements.
    std::uint32_t depth = 0;           // open elements, made-up ones included
    std::uint32_t madeUp = 0;          // of these, the outermost that expat knows by a made-up name
    std::vector<std::uint32_t> unseen; // hashes of the outermost, which startAt() went past
    std::vector<std::uint32_t> openAtStart;
    bool hasTypeDeclaration = false;
    std::uint64_t tagCount = 0;
    std::optional<SavedState> target; // tags up to this place are left out
    std::uint32_t skipFloor = 0;      // 0, or see skipUntilFewerThan()

    // The run of text behind the tag met last.
    bool isCollecting = false;   // it is wanted
    bool hasInk = false;         // it is more than white space
    bool isMuted = false;        // expat has no handler for it
    std::uint64_t blankSize = 0; // bytes of white space at its begin
    std::uint64_t runSize = 0;   // bytes queued
    std::uint64_t runLimit = 0;  // there expat pauses

    // Limits, in the widths used here.
    std::uint32_t deepest = 0;
    std::uint64_t longestTag = 0;
    std::uint64_t longestBlank = 0;
};

} // namespace olmhost

#endif
