#include "host/markup/MarkupParser.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <random>
#include <utility>

#include <expat.h>

#include "host/markup/EntitySupport.h"
#include "host/markup/LineCount.h"
#include "host/markup/NameHash.h"

namespace olmhost {

namespace {

// Bytes.
constexpr std::size_t maxQueued = std::size_t{1} << 20;     // added by one fill(), about
constexpr std::uint64_t maxReused = std::uint64_t{1} << 20; // read; then expat is made anew
constexpr std::uint64_t maxLimit = std::uint64_t{1} << 30;

constexpr std::uint32_t maxDepth = 0xFFFF; // what a saved state holds

// Guards expat's tables against names chosen to collide. Without it, expat would ask the system for
// random bytes for each document.
unsigned long hashSalt() {
    static const unsigned long salt = std::random_device{}() | 1UL;
    return salt;
}

// Returns the bytes of a tag's name and attributes, which entities may make longer than the tag.
std::uint64_t totalLength(const char* name, const char** attributes) {
    std::uint64_t length = std::strlen(name);
    for (; *attributes != nullptr; ++attributes) {
        length += std::strlen(*attributes);
    }
    return length;
}

std::string reasonOf(XML_Error code, bool atEnd) {
    const bool cutOff = code == XML_ERROR_NO_ELEMENTS || code == XML_ERROR_UNCLOSED_TOKEN ||
                        code == XML_ERROR_PARTIAL_CHAR || code == XML_ERROR_UNCLOSED_CDATA_SECTION;
    if (atEnd && cutOff) {
        return "the document ends before its root element does";
    }
    if (code == XML_ERROR_EXTERNAL_ENTITY_HANDLING) {
        return "external entities are not supported";
    }
    if (code == XML_ERROR_NOT_STANDALONE) {
        return "declarations outside the document are not supported";
    }
    return XML_ErrorString(code);
}

} // namespace

void MarkupParser::ParserDelete::operator()(XML_ParserStruct* parser) const {
    XML_ParserFree(parser);
}

// The functions that expat calls. Nothing may be thrown through it, so a failed allocation stops
// the document.
struct MarkupParser::Handlers {
    template <typename Action> static void guarded(void* user, Action action) {
        auto& self = *static_cast<MarkupParser*>(user);
        if (self.found) {
            return;
        }
        try {
            action(self);
        } catch (const std::exception& failure) {
            self.stop(FaultKind::LimitReached, failure.what());
        }
    }

    static void opening(void* user, const XML_Char* name, const XML_Char** attributes) {
        guarded(user, [=](MarkupParser& self) { self.onOpening(name, attributes); });
    }
    static void closing(void* user, const XML_Char* name) {
        guarded(user, [=](MarkupParser& self) { self.onClosing(name); });
    }
    static void text(void* user, const XML_Char* bytes, int size) {
        guarded(user,
                [=](MarkupParser& self) { self.onText(bytes, static_cast<std::size_t>(size)); });
    }
    static void declaration(void* user, const XML_Char*, const XML_Char* encoding, int) {
        guarded(user, [=](MarkupParser& self) { self.detector.setDeclared(encoding); });
    }
    static void typeDeclaration(void* user, const XML_Char*, const XML_Char*, const XML_Char*,
                                int) {
        guarded(user, [](MarkupParser& self) {
            self.hasTypeDeclaration = true;
            self.hasSoundEntities = EntitySupport::isSound();
        });
    }
    static void entityDeclaration(void* user, const XML_Char*, int, const XML_Char*, int,
                                  const XML_Char*, const XML_Char*, const XML_Char*,
                                  const XML_Char*) {
        guarded(user, [](MarkupParser& self) { self.onEntityDeclaration(); });
    }
    static int refuse(void*) { return XML_STATUS_ERROR; }
    static int refuseExternal(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*,
                              const XML_Char*) {
        return XML_STATUS_ERROR;
    }
};

void MarkupParser::open(Handle& document) {
    feed.open(document);
    limits = document.limits();
    limits.deepestNesting = std::min(limits.deepestNesting, maxDepth);
    limits.longestAttribute = std::min(limits.longestAttribute, maxLimit);
    limits.longestBlank = std::min(limits.longestBlank, maxLimit);
    detector.clear();
    startFromBegin();
    watch = document.tagWatch();
    if (watch != nullptr) {
        watch->beginDocument();
    }
}

void MarkupParser::close() {
    feed.close();
    watch = nullptr;
    queue.clear();
    // Expat's buffer and its tables of names grow with what it has read.
    if (feed.totalRead() > maxReused) {
        parser.reset();
    }
}

bool MarkupParser::startAt(const SavedState& saved) {
    watch = nullptr;
    queue.clear();
    skipFloor = 0;
    openAtStart.clear();
    const bool fromBegin = saved.isStart() || saved.needsReplay();
    const std::uint64_t place = fromBegin ? 0 : saved.place;
    if (fromBegin) {
        startFromBegin();
    } else {
        detector.setSaved(saved.encoding);
        elements.assign(std::span(saved.names).first(saved.depth));
        openAtStart = elements.unseenHashes();
        startInMiddle(place);
        beginRun(saved.has(SavedState::AfterOpening) && !saved.has(SavedState::TextDone));
    }
    if (!feed.seekTo(place)) {
        queue.addEnd();
        return false;
    }
    const bool isInsideTag = saved.has(SavedState::SelfClosed);
    return (!saved.needsReplay() && !isInsideTag) || replayTo(saved);
}

// Parses up to the tag that the state was saved at, and leaves everything out.
bool MarkupParser::replayTo(const SavedState& saved) {
    target = saved;
    while (target && queue.empty()) {
        fill();
    }
    if (!target) {
        return true;
    }
    target.reset();
    queue.clear();
    queue.addEnd();
    return false;
}

void MarkupParser::startFromBegin() {
    prepareExpat(nullptr);
    feed.restart(0, 0);
    isFromBegin = true;
    elements.clear();
    hasTypeDeclaration = false;
    hasSoundEntities = true;
    declaredEntities = 0;
    tagCount = 0;
    skipFloor = 0;
    beginRun(false);
    installHandlers();
}

// Starts at `place`, to which the stream is or will be moved, inside the unseen elements.
void MarkupParser::startInMiddle(std::uint64_t place) {
    prepareExpat(protocolName(encoding()));
    elements.usePlaceholders();
    std::string tags = elements.depth() == 0 ? "<x/>" : "";
    for (std::uint32_t i = 0; i < elements.depth(); ++i) {
        tags += "<x>";
    }
    tags = encodeAscii(tags, encoding());
    if (XML_Parse(parser.get(), tags.data(), static_cast<int>(tags.size()), 0) != XML_STATUS_OK) {
        throw std::bad_alloc();
    }
    feed.restart(place, tags.size());
    isFromBegin = false;
    hasTypeDeclaration = false;
    hasSoundEntities = true;
    installHandlers();
}

void MarkupParser::prepareExpat(const char* protocolEncoding) {
    if (!parser) {
        parser.reset(XML_ParserCreate(nullptr));
        if (!parser) {
            throw std::bad_alloc();
        }
    }
    XML_ParserReset(parser.get(), protocolEncoding);
    XML_SetHashSalt(parser.get(), hashSalt());
    found.reset();
    target.reset();
    isPaused = false;
    isAtPlaceholderEnd = false;
}

void MarkupParser::installHandlers() {
    XML_Parser expat = parser.get();
    XML_SetUserData(expat, this);
    XML_SetElementHandler(expat, Handlers::opening, Handlers::closing);
    XML_SetCharacterDataHandler(expat, Handlers::text);
    isMuted = false;
    XML_SetXmlDeclHandler(expat, Handlers::declaration);
    XML_SetStartDoctypeDeclHandler(expat, Handlers::typeDeclaration);
    XML_SetEntityDeclHandler(expat, Handlers::entityDeclaration);
    XML_SetNotStandaloneHandler(expat, Handlers::refuse);
    XML_SetExternalEntityRefHandler(expat, Handlers::refuseExternal);
}

void MarkupParser::fill() {
    queue.recycle();
    if (isAtPlaceholderEnd) {
        isAtPlaceholderEnd = false;
        closePlaceholder();
        return;
    }
    weightBefore = queue.weight();
    if (!parseChunk()) {
        handleError();
    } else if (!isPaused && feed.isAtEnd()) {
        queue.addEnd();
    } else if (!isPaused) {
        lookAtPending();
    }
}

// Returns false when expat has found a fault, or was stopped because of one.
bool MarkupParser::parseChunk() {
    XML_Status status = XML_STATUS_OK;
    if (isPaused) {
        status = XML_ResumeParser(parser.get());
    } else {
        void* const buffer = XML_GetBuffer(parser.get(), static_cast<int>(feed.chunkSize()));
        if (buffer == nullptr) {
            throw std::bad_alloc();
        }
        const std::uint32_t count = feed.read(static_cast<char*>(buffer));
        if (isFromBegin) {
            detector.addBytes(static_cast<const char*>(buffer), count);
        }
        status = XML_ParseBuffer(parser.get(), static_cast<int>(count), feed.isAtEnd() ? 1 : 0);
    }
    isPaused = status == XML_STATUS_SUSPENDED;
    return status != XML_STATUS_ERROR;
}

// Expat holds the bytes of a tag, comment or the like that isn't complete, and looks at them anew
// with each chunk: they are bounded, and the chunks grow with them. Expat may wait until there are
// twice as many, so some may belong to what follows that tag.
void MarkupParser::lookAtPending() {
    const std::uint64_t pending = feed.pendingFrom(XML_GetCurrentByteIndex(parser.get()));
    if (pending > 2 * limits.longestAttribute) {
        noteFault(FaultKind::LimitReached,
                  "a tag, comment or other construct is longer than the limit of " +
                      std::to_string(limits.longestAttribute) + " bytes");
        queue.addEnd();
        return;
    }
    feed.grow(pending, limits.longestAttribute);
}

void MarkupParser::handleError() {
    const XML_Error code = XML_GetErrorCode(parser.get());
    if (!found && code == XML_ERROR_TAG_MISMATCH && elements.hasPlaceholder()) {
        // Most readers stop before this tag, so it is read only when it is asked for.
        isAtPlaceholderEnd = true;
        return;
    }
    if (!found) {
        const bool isBomb = code == XML_ERROR_AMPLIFICATION_LIMIT_BREACH;
        noteFault(isBomb ? FaultKind::LimitReached : FaultKind::BrokenMarkup,
                  reasonOf(code, feed.isAtEnd()));
    }
    queue.addEnd();
}

// Expat is at the name in the closing tag of an element that it knows by a placeholder.
void MarkupParser::closePlaceholder() {
    const std::uint64_t place = currentPlace();
    const std::optional<std::string> bytes = feed.readTo(encodeAscii(">", encoding()), place);
    if (!bytes) {
        noteFault(FaultKind::BrokenMarkup, "the document can't be read a second time");
        queue.addEnd();
        return;
    }
    std::string name = decodeToUtf8(*bytes, encoding());
    name.resize(std::min(name.find_first_of(" \t\r\n>"), name.size()));
    if (nameHash(name) != elements.innermostUnseen()) {
        noteFault(FaultKind::BrokenMarkup, XML_ErrorString(XML_ERROR_TAG_MISMATCH));
        queue.addEnd();
        return;
    }
    const std::uint64_t tagEnd = place + bytes->size();
    closed(name, tagEnd);
    startInMiddle(tagEnd);
}

void MarkupParser::skipText() {
    run.drop();
    if (!isMuted && parser) {
        XML_SetCharacterDataHandler(parser.get(), nullptr);
        isMuted = true;
    }
}

void MarkupParser::skipUntilFewerThan(std::uint32_t elements) {
    skipFloor = elements;
    skipText();
}

std::uint64_t MarkupParser::currentPlace() const {
    return feed.placeOf(XML_GetCurrentByteIndex(parser.get()));
}

void MarkupParser::onOpening(const char* name, const char** attributes) {
    const auto tagLength = static_cast<std::uint32_t>(XML_GetCurrentByteCount(parser.get()));
    elements.open();
    if (!isWithinLimits(hasTypeDeclaration ? totalLength(name, attributes) : tagLength)) {
        return;
    }
    if (watch != nullptr && elements.depth() <= watch->openingsTo) {
        watch->opened(elements.depth(), name, attributes);
    }
    const std::uint64_t begin = currentPlace();
    ++tagCount;
    const std::uint64_t place = hasTypeDeclaration ? tagCount : begin + tagLength;
    if (target) {
        elements.markUnseen(nameHash(name));
        const bool hasTextLeft = !target->has(SavedState::TextDone);
        beginRun(reachesTarget(EventKind::Opening, begin, place) && hasTextLeft);
        return;
    }
    if (skipFloor != 0) {
        return;
    }
    queue.dropBlankAtBack();
    beginRun(true);
    queue.addOpening(name, attributes, place, tagLength);
    afterAdding(false);
}

void MarkupParser::onClosing(const char* name) {
    if (elements.isPlaceholder()) {
        // The element really has the placeholder's name, or the closing tag is wrong.
        if (nameHash(name) != elements.innermostUnseen()) {
            // After "</", where expat itself would place it.
            stop(FaultKind::BrokenMarkup, XML_ErrorString(XML_ERROR_TAG_MISMATCH),
                 std::uint64_t{2} * unitSize(encoding()));
            return;
        }
        elements.confirmPlaceholder();
    }
    const std::uint64_t begin = currentPlace();
    MarkupEvent* const opening = queue.openingAtBack();
    const auto size = static_cast<std::uint64_t>(XML_GetCurrentByteCount(parser.get()));
    if (opening != nullptr && size == 0 && !hasTypeDeclaration) {
        opening->selfClosed = true;
    }
    closed(name, begin + size);
}

// An element ends; `place` is the end of its closing tag.
void MarkupParser::closed(std::string_view name, std::uint64_t place) {
    if (watch != nullptr && elements.depth() <= watch->closingsTo) {
        watch->closed(elements.depth());
    }
    ++tagCount;
    if (hasTypeDeclaration) {
        place = tagCount;
    }
    const bool wasUnseen = elements.close();
    if (target && place <= target->place) {
        reachesTarget(EventKind::Closing, 0, place);
        beginRun(false);
        return;
    }
    if (skipFloor != 0) {
        if (elements.depth() >= skipFloor) {
            return;
        }
        skipFloor = 0;
    }
    beginRun(false);
    queue.addClosing(wasUnseen ? name : std::string_view(), place);
    afterAdding(false);
}

// Handles a tag that is left out on the way to the target. Returns true, and drops the target, when
// the state was saved at this tag.
bool MarkupParser::reachesTarget(EventKind kind, std::uint64_t begin, std::uint64_t place) {
    const bool isOpening = kind == EventKind::Opening;
    const bool byBegin = target->has(SavedState::SelfClosed);
    const std::uint64_t reached = isOpening && byBegin ? begin : place;
    if (reached != target->place || isOpening != target->has(SavedState::AfterOpening)) {
        return false;
    }
    target.reset();
    openAtStart = elements.unseenHashes();
    return true;
}

void MarkupParser::beginRun(bool isWanted) {
    run.begin(isWanted);
    if (isMuted && skipFloor == 0) {
        XML_SetCharacterDataHandler(parser.get(), Handlers::text);
        isMuted = false;
    }
}

void MarkupParser::onText(const char* bytes, std::size_t size) {
    if (run.add(bytes, size) > limits.longestBlank) {
        stop(FaultKind::LimitReached, "a run of white space is longer than the limit of " +
                                          std::to_string(limits.longestBlank) + " bytes");
        return;
    }
    if (run.isWanted()) {
        queue.addText(bytes, size, run.isBlank());
        afterAdding(run.addQueued(size));
    }
}

bool MarkupParser::isWithinLimits(std::uint64_t tagLength) {
    if (elements.depth() > limits.deepestNesting) {
        stop(FaultKind::LimitReached, "elements are nested deeper than the limit of " +
                                          std::to_string(limits.deepestNesting));
        return false;
    }
    if (tagLength > limits.longestAttribute) {
        stop(FaultKind::LimitReached, "a tag is longer than the limit of " +
                                          std::to_string(limits.longestAttribute) + " bytes");
        return false;
    }
    return true;
}

// Pauses when the queue is full, since entities can expand a few bytes to many, and when the reader
// may skip the rest of a text.
void MarkupParser::afterAdding(bool maySkipRest) {
    if (hasSoundEntities) {
        if (maySkipRest || queue.weight() > weightBefore + maxQueued) {
            XML_StopParser(parser.get(), XML_TRUE);
        }
    } else if (queue.weight() > weightBefore + EntitySupport::addedLimit()) {
        stop(FaultKind::LimitReached, "entities expand to more than the limit of " +
                                          std::to_string(EntitySupport::addedLimit()) +
                                          " bytes; a newer libexpat has no such limit");
    }
}

void MarkupParser::onEntityDeclaration() {
    if (!hasSoundEntities && ++declaredEntities > EntitySupport::maxDeclared) {
        stop(FaultKind::LimitReached, "it declares more entities than the limit of " +
                                          std::to_string(EntitySupport::maxDeclared) +
                                          "; a newer libexpat has no such limit");
    }
}

void MarkupParser::stop(FaultKind kind, const std::string& reason, std::uint64_t offset) {
    noteFault(kind, reason, offset);
    XML_StopParser(parser.get(), XML_FALSE);
}

// The fault is at expat's position; in the middle of a document, `offset` bytes after that.
void MarkupParser::noteFault(FaultKind kind, const std::string& reason, std::uint64_t offset) {
    LineColumn at;
    if (isFromBegin) {
        at = {XML_GetCurrentLineNumber(parser.get()), XML_GetCurrentColumnNumber(parser.get()) + 1};
    } else {
        at = countLines(feed.document(), currentPlace() + offset, encoding());
    }
    found = Fault{kind, "line " + std::to_string(at.line) + ", column " +
                            std::to_string(at.column) + ": " + reason};
}

} // namespace olmhost
