#ifndef OLMKIT_HOST_MARKUP_MARKUPPARSER_H
#define OLMKIT_HOST_MARKUP_MARKUPPARSER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/markup/ChunkFeed.h"
#include "host/markup/EncodingDetector.h"
#include "host/markup/EventQueue.h"
#include "host/markup/OpenElements.h"
#include "host/markup/SavedState.h"
#include "host/markup/TextRun.h"
#include "host/stream/Handle.h"

struct XML_ParserStruct;

namespace olmhost {

// Turns the bytes of one document into events, a chunk at a time.
//
// Order of calls: open(), then fill() whenever the queue has run empty (or holds white space that
// may turn out not to be text), startAt() at any time, close().
//
// An event's place is the number of bytes from the document's start to the end of its tag. In a
// document with a type declaration, where tags may come out of entities, it is the number of tags.
//
// To start in the middle of a document, expat gets placeholder tags for the open elements before
// the document's bytes. Their closing tags then don't match: each is compared with the hash of the
// real name, and parsing starts again after it with one placeholder fewer.
class MarkupParser {
public:
    MarkupParser() = default;
    MarkupParser(const MarkupParser&) = delete;
    MarkupParser& operator=(const MarkupParser&) = delete;
    ~MarkupParser() = default;

    // Begins with a document; the stream is borrowed until close(). Reads nothing yet.
    void open(Handle& document);
    void close();

    // Continues after the tag that the state was saved at. Returns false when the stream can't be
    // moved or the document has no such tag; the queue then holds the End alone.
    bool startAt(const SavedState& saved);

    // Parses one more chunk. Adds End, once, when nothing more can come.
    void fill();
    EventQueue queue;

    // Skips the rest of the text that is being read.
    void skipText();
    // Skips all tags up to the closing one after which fewer than `elements` are open.
    void skipUntilFewerThan(std::uint32_t elements);

    // Returns the hashes of the names of the elements that are open where startAt() continues, root
    // first.
    std::span<const std::uint32_t> elementsAtStart() const { return openAtStart; }

    DocumentEncoding encoding() const { return detector.encoding(); }
    bool countsTags() const { return hasTypeDeclaration; }

    struct Fault {
        FaultKind kind;
        std::string text; // "line L, column C: reason"
    };
    // Returns what is wrong with the document, once the End has come. Null when nothing is.
    const Fault* fault() const { return found ? &*found : nullptr; }

private:
    struct ParserDelete {
        void operator()(XML_ParserStruct* parser) const;
    };
    struct Handlers;

    void startFromBegin();
    void startInMiddle(std::uint64_t place);
    bool replayTo(const SavedState& saved);
    void prepareExpat(const char* protocolEncoding);
    void installHandlers();
    bool parseChunk();
    void handleError();
    void closePlaceholder();
    void lookAtPending();

    void onOpening(const char* name, const char** attributes);
    void onClosing(const char* name);
    void onText(const char* bytes, std::size_t size);
    void onEntityDeclaration();
    void closed(std::string_view name, std::uint64_t place);
    void beginRun(bool isWanted);
    bool reachesTarget(EventKind kind, std::uint64_t begin, std::uint64_t place);
    bool isWithinLimits(std::uint64_t tagLength);
    void afterAdding(bool maySkipRest);
    std::uint64_t currentPlace() const;

    void stop(FaultKind kind, const std::string& reason, std::uint64_t offset = 0);
    void noteFault(FaultKind kind, const std::string& reason, std::uint64_t offset = 0);

    std::unique_ptr<XML_ParserStruct, ParserDelete> parser;
    TagWatch* watch = nullptr; // borrowed; not null while the document is read from its start
    Limits limits;             // those of the document, no larger than can be counted here
    std::optional<Fault> found;

    ChunkFeed feed;
    EncodingDetector detector;
    OpenElements elements;
    TextRun run; // the text after the last tag

    // Expat.
    bool isMuted = false;            // it has no handler for text
    bool isPaused = false;           // it waits amid a chunk, since the queue was full
    bool isAtPlaceholderEnd = false; // it refused a closing tag; see closePlaceholder()
    bool isFromBegin = true;         // it has seen the document from its start
    bool hasSoundEntities = true;    // see EntitySupport; else it never pauses
    unsigned declaredEntities = 0;   // counted unless they are sound
    std::size_t weightBefore = 0;    // of the queue, before fill()

    // Places.
    bool hasTypeDeclaration = false;
    std::uint64_t tagCount = 0;
    std::optional<SavedState> target; // tags up to this one are left out
    std::vector<std::uint32_t> openAtStart;
    std::uint32_t skipFloor = 0; // 0, or see skipUntilFewerThan()
};

} // namespace olmhost

#endif
