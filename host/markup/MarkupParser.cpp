#include "host/markup/MarkupParser.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <random>
#include <utility>

#include <expat.h>

#include "host/markup/LineCount.h"
#include "host/markup/NameHash.h"

namespace olmhost {

namespace {

// Bytes.
constexpr std::uint32_t firstChunk = 2048;
constexpr std::uint32_t largestChunk = 32768;
constexpr std::size_t mostQueued = std::size_t{1} << 20; // added by one fill(), about
// Of a text no more is queued before it is known whether anybody wants it; most of the long ones
// are skipped.
constexpr std::uint64_t firstTextAhead = 512;
constexpr std::uint64_t mostTextAhead = 65536;
constexpr std::uint64_t mostReused = std::uint64_t{1} << 20; // read; then expat is made anew
constexpr std::uint64_t farthestLimit = std::uint64_t{1} << 30;

constexpr std::uint32_t deepestDepth = 0xFFFF; // what a saved place holds

bool isBlank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool isBlankText(const char* bytes, std::size_t size) {
    return std::all_of(bytes, bytes + size, isBlank);
}

// Guards expat's tables against names chosen to collide. Given from outside, as expat would
// otherwise ask the system for random bytes for each document.
unsigned long hashSalt() {
    static const unsigned long salt = std::random_device{}() | 1UL;
    return salt;
}

// Bytes of a tag's name and attributes, which entities may have made longer than the tag.
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
        return "an external entity is not read";
    }
    if (code == XML_ERROR_NOT_STANDALONE) {
        return "declarations outside the document are not read";
    }
    return XML_ErrorString(code);
}

} // namespace

void MarkupParser::ParserDelete::operator()(XML_ParserStruct* parser) const {
    XML_ParserFree(parser);
}

// What expat calls. Nothing may be thrown through it, so a failed allocation stops the document.
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
        guarded(user, [=](MarkupParser& self) {
            self.declaredEncoding = encoding == nullptr ? "" : encoding;
        });
    }
    static void typeDeclaration(void* user, const XML_Char*, const XML_Char*, const XML_Char*,
                                int) {
        static_cast<MarkupParser*>(user)->hasTypeDeclaration = true;
    }
    static int refuse(void*) { return XML_STATUS_ERROR; }
    static int refuseExternal(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*,
                              const XML_Char*) {
        return XML_STATUS_ERROR;
    }
};

void MarkupParser::open(Handle& document) {
    stream = &document;
    total = 0;
    const Limits& limits = document.limits();
    deepest = std::min(limits.deepestNesting, deepestDepth);
    longestTag = std::min(limits.longestAttribute, farthestLimit);
    longestBlank = std::min(limits.longestBlank, farthestLimit);
    head.clear();
    declaredEncoding.clear();
    knownEncoding.reset();
    startFromBegin();
    watch = document.tagWatch();
    if (watch != nullptr) {
        watch->beginDocument();
    }
}

void MarkupParser::close() {
    stream = nullptr;
    watch = nullptr;
    queue.clear();
    // Its buffer and its tables of names grow with what it has read.
    if (total > mostReused) {
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
        knownEncoding = saved.encoding;
        unseen.assign(saved.names.begin(), saved.names.begin() + saved.depth);
        openAtStart = unseen;
        startInMiddle(place);
        beginRun(saved.has(SavedState::AfterOpening) && !saved.has(SavedState::TextDone));
    }
    if (stream->seekTo(static_cast<std::int64_t>(place), 0) != Handle::statusDone) {
        queue.addEnd();
        return false;
    }
    if (saved.needsReplay() || saved.has(SavedState::SelfClosed)) {
        target = saved;
        while (target && queue.empty()) {
            fill();
        }
        if (target) {
            target.reset();
            queue.clear();
            queue.addEnd();
            return false;
        }
    }

    return true;
}

void MarkupParser::startFromBegin() {
    prepareExpat(nullptr);
    base = 0;
    fed = 0;
    atDocumentBegin = true;
    depth = 0;
    madeUp = 0;
    unseen.clear();
    hasTypeDeclaration = false;
    tagCount = 0;
    skipFloor = 0;
    beginRun(false);
    installHandlers();
}

// The elements of `unseen` are open at `place`, to which the stream is or will be moved.
void MarkupParser::startInMiddle(std::uint64_t place) {
    prepareExpat(protocolName(encoding()));
    depth = static_cast<std::uint32_t>(unseen.size());
    madeUp = depth;
    std::string tags = depth == 0 ? "<x/>" : "";
    for (std::uint32_t i = 0; i < depth; ++i) {
        tags += "<x>";
    }
    tags = encodeAscii(tags, encoding());
    if (XML_Parse(parser.get(), tags.data(), static_cast<int>(tags.size()), 0) != XML_STATUS_OK) {
        throw std::bad_alloc();
    }
    fed = tags.size();
    base = place - fed;
    atDocumentBegin = false;
    hasTypeDeclaration = false;
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
    settled = 0;
    chunkSize = firstChunk;
    isLast = false;
    isPaused = false;
    isAtUnseenClosing = false;
}

void MarkupParser::installHandlers() {
    XML_Parser expat = parser.get();
    XML_SetUserData(expat, this);
    XML_SetElementHandler(expat, Handlers::opening, Handlers::closing);
    XML_SetCharacterDataHandler(expat, Handlers::text);
    isMuted = false;
    XML_SetXmlDeclHandler(expat, Handlers::declaration);
    XML_SetStartDoctypeDeclHandler(expat, Handlers::typeDeclaration);
    XML_SetNotStandaloneHandler(expat, Handlers::refuse);
    XML_SetExternalEntityRefHandler(expat, Handlers::refuseExternal);
}

void MarkupParser::fill() {
    queue.recycle();
    if (isAtUnseenClosing) {
        isAtUnseenClosing = false;
        closeUnseenElement();
        return;
    }
    fullWeight = queue.weight() + mostQueued;
    if (!parseChunk()) {
        handleError();
    } else if (!isPaused && isLast) {
        queue.addEnd();
    } else if (!isPaused) {
        lookAtPending();
    }
}

// False when expat has found a fault, or was told of one.
bool MarkupParser::parseChunk() {
    XML_Status status = XML_STATUS_OK;
    if (isPaused) {
        status = XML_ResumeParser(parser.get());
    } else {
        void* const buffer = XML_GetBuffer(parser.get(), static_cast<int>(chunkSize));
        if (buffer == nullptr) {
            throw std::bad_alloc();
        }
        const std::uint32_t count = readChunk(static_cast<char*>(buffer));
        if (head.size() < 2 && atDocumentBegin) {
            head.append(static_cast<const char*>(buffer),
                        std::min<std::size_t>(count, 2 - head.size()));
        }
        fed += count;
        total += count;
        status = XML_ParseBuffer(parser.get(), static_cast<int>(count), isLast ? 1 : 0);
    }
    isPaused = status == XML_STATUS_SUSPENDED;
    return status != XML_STATUS_ERROR;
}

// A short read mostly means that the end is near. Asking at once lets expat know that this chunk is
// the last, which spares it the counting of lines.
std::uint32_t MarkupParser::readChunk(char* buffer) {
    std::uint32_t count = 0;
    isLast = stream->readBytes(buffer, chunkSize, count) != Handle::statusDone || count == 0;
    if (!isLast && count < chunkSize) {
        std::uint32_t more = 0;
        const std::int32_t status = stream->readBytes(buffer + count, chunkSize - count, more);
        isLast = status != Handle::statusDone || more == 0;
        count += more;
    }
    return count;
}

// Bytes that expat can't report yet, since a tag, comment or the like isn't complete, are held by
// expat and looked at anew with each chunk: they are bounded, and the chunks grow with them. Expat
// may wait until there are twice as many, so some may belong to what comes behind that tag.
void MarkupParser::lookAtPending() {
    const XML_Index index = XML_GetCurrentByteIndex(parser.get());
    if (index >= 0) {
        settled = static_cast<std::uint64_t>(index);
    }
    const std::uint64_t pending = fed - settled;
    if (pending > 2 * longestTag) {
        noteFault(FaultKind::LimitReached, "a tag, comment or the like is longer than " +
                                               std::to_string(longestTag) + " bytes");
        queue.addEnd();
        return;
    }
    const std::uint64_t wanted = std::min(2 * chunkSize, largestChunk);
    chunkSize = static_cast<std::uint32_t>(std::max(wanted, std::min(pending, longestTag)));
}

void MarkupParser::handleError() {
    const XML_Error code = XML_GetErrorCode(parser.get());
    if (!found && code == XML_ERROR_TAG_MISMATCH && madeUp > 0 && depth == madeUp) {
        // Most readers stop before this tag, so it is looked at when it is asked for.
        isAtUnseenClosing = true;
        return;
    }
    if (!found) {
        const bool isBomb = code == XML_ERROR_AMPLIFICATION_LIMIT_BREACH;
        noteFault(isBomb ? FaultKind::LimitReached : FaultKind::BrokenMarkup,
                  reasonOf(code, isLast));
    }
    queue.addEnd();
}

// Expat stands at the name in the closing tag of an element that it knows by a made-up name.
void MarkupParser::closeUnseenElement() {
    const std::uint64_t place = currentPlace();
    const std::optional<std::string> bytes = readTo('>', place);
    if (!bytes) {
        noteFault(FaultKind::BrokenMarkup, "the document can't be read again");
        queue.addEnd();
        return;
    }
    std::string name = decodeToUtf8(*bytes, encoding());
    name.resize(std::min(name.find_first_of(" \t\r\n>"), name.size()));
    if (nameHash(name) != unseen.back()) {
        noteFault(FaultKind::BrokenMarkup, XML_ErrorString(XML_ERROR_TAG_MISMATCH));
        queue.addEnd();
        return;
    }
    const std::uint64_t behind = place + bytes->size();
    closed(name, behind);
    startInMiddle(behind);
}

// The document's bytes from `place` to behind the next `last`, an ASCII character. The stream
// stands behind them then. Empty when it can't be read that far.
std::optional<std::string> MarkupParser::readTo(char last, std::uint64_t place) {
    constexpr std::uint32_t blockSize = 128;
    const std::string end = encodeAscii(std::string_view(&last, 1), encoding());
    if (stream->seekTo(static_cast<std::int64_t>(place), 0) != Handle::statusDone) {
        return std::nullopt;
    }
    std::string bytes;
    std::size_t at = 0;
    for (;;) {
        for (; at + end.size() <= bytes.size(); at += end.size()) {
            if (bytes.compare(at, end.size(), end) == 0) {
                bytes.resize(at + end.size());
                const auto behind = static_cast<std::int64_t>(place + bytes.size());
                const bool isMoved = stream->seekTo(behind, 0) == Handle::statusDone;
                return isMoved ? std::optional(std::move(bytes)) : std::nullopt;
            }
        }
        const std::size_t before = bytes.size();
        bytes.resize(before + blockSize);
        std::uint32_t count = 0;
        const std::int32_t status = stream->readBytes(bytes.data() + before, blockSize, count);
        bytes.resize(before + count);
        if (status != Handle::statusDone || count == 0) {
            return std::nullopt;
        }
    }
}

void MarkupParser::skipText() {
    isCollecting = false;
    if (!isMuted && parser) {
        XML_SetCharacterDataHandler(parser.get(), nullptr);
        isMuted = true;
    }
}

void MarkupParser::skipUntilFewerThan(std::uint32_t elements) {
    skipFloor = elements;
    skipText();
}

DocumentEncoding MarkupParser::encoding() const {
    return knownEncoding ? *knownEncoding : documentEncoding(head, declaredEncoding);
}

std::uint64_t MarkupParser::currentPlace() const {
    return base + static_cast<std::uint64_t>(XML_GetCurrentByteIndex(parser.get()));
}

void MarkupParser::onOpening(const char* name, const char** attributes) {
    const auto tagLength = static_cast<std::uint32_t>(XML_GetCurrentByteCount(parser.get()));
    ++depth;
    if (!isWithinLimits(hasTypeDeclaration ? totalLength(name, attributes) : tagLength)) {
        return;
    }
    if (watch != nullptr && depth <= watch->openingsTo) {
        watch->opened(depth, name, attributes);
    }
    const std::uint64_t begin = currentPlace();
    ++tagCount;
    const std::uint64_t place = hasTypeDeclaration ? tagCount : begin + tagLength;
    if (target) {
        unseen.push_back(nameHash(name));
        const bool hasTextLeft = !target->has(SavedState::TextDone);
        beginRun(passesTarget(EventKind::Opening, begin, place) && hasTextLeft);
        return;
    }
    if (skipFloor != 0) {
        return;
    }
    queue.dropBlankAtBack();
    beginRun(true);
    queue.addOpening(name, attributes, place, tagLength);

    pauseWhenFull();
}

void MarkupParser::onClosing(const char* name) {
    if (depth == madeUp) {
        // The element really has the name that was made up for it, or the closing tag is wrong.
        if (nameHash(name) != unseen.back()) {
            // Behind "</", where expat itself would place it.
            stop(FaultKind::BrokenMarkup, XML_ErrorString(XML_ERROR_TAG_MISMATCH),
                 std::uint64_t{2} * unitSize(encoding()));
            return;
        }
        --madeUp;
    }
    const std::uint64_t begin = currentPlace();
    MarkupEvent* const opening = queue.openingAtBack();
    const auto size = static_cast<std::uint64_t>(XML_GetCurrentByteCount(parser.get()));
    if (opening != nullptr && size == 0 && !hasTypeDeclaration) {
        opening->selfClosed = true;
    }
    closed(name, begin + size);
}

// An element ends; `place` is behind its closing tag.
void MarkupParser::closed(std::string_view name, std::uint64_t place) {
    if (watch != nullptr && depth <= watch->closingsTo) {
        watch->closed(depth);
    }
    ++tagCount;
    if (hasTypeDeclaration) {
        place = tagCount;
    }
    const bool isUnseen = depth == unseen.size();
    if (isUnseen) {
        unseen.pop_back();
    }
    --depth;
    if (target && place <= target->place) {
        passesTarget(EventKind::Closing, 0, place);
        beginRun(false);
        return;
    }
    if (skipFloor != 0) {
        if (depth >= skipFloor) {
            return;
        }
        skipFloor = 0;
    }
    beginRun(false);
    queue.addClosing(isUnseen ? name : std::string_view(), place);
    pauseWhenFull();
}

// A tag that is left out on the way to the target. True, and the target is done with, when the
// tag is the one that the place was saved behind.
bool MarkupParser::passesTarget(EventKind kind, std::uint64_t begin, std::uint64_t place) {
    const bool isOpening = kind == EventKind::Opening;
    const bool byBegin = target->has(SavedState::SelfClosed);
    const std::uint64_t reached = isOpening && byBegin ? begin : place;
    if (reached == target->place && isOpening == target->has(SavedState::AfterOpening)) {
        target.reset();
        openAtStart = unseen;
        return true;
    }
    return false;
}

void MarkupParser::beginRun(bool behindOpening) {
    isCollecting = behindOpening;
    hasInk = false;
    blankSize = 0;
    runSize = 0;
    runLimit = firstTextAhead;
    if (isMuted && skipFloor == 0) {
        XML_SetCharacterDataHandler(parser.get(), Handlers::text);
        isMuted = false;
    }
}

void MarkupParser::onText(const char* bytes, std::size_t size) {
    if (!hasInk) {
        hasInk = !isBlankText(bytes, size);
        if (!hasInk) {
            blankSize += size;
            if (blankSize > longestBlank) {
                stop(FaultKind::LimitReached,
                     "more than " + std::to_string(longestBlank) + " bytes of white space on end");
                return;
            }
        }
    }
    if (isCollecting) {
        queue.addText(bytes, size, !hasInk);
        runSize += size;
        if (runSize > runLimit) {
            runLimit = runSize + mostTextAhead;
            XML_StopParser(parser.get(), XML_TRUE);
        }
    }
}

bool MarkupParser::isWithinLimits(std::uint64_t tagLength) {
    if (depth > deepest) {
        stop(FaultKind::LimitReached,
             "more than " + std::to_string(deepest) + " elements are open");
        return false;
    }
    if (tagLength > longestTag) {
        stop(FaultKind::LimitReached,
             "a tag is longer than " + std::to_string(longestTag) + " bytes");
        return false;
    }
    return true;
}

// Entities can make much of a few bytes.
void MarkupParser::pauseWhenFull() {
    if (queue.weight() > fullWeight) {
        XML_StopParser(parser.get(), XML_TRUE);
    }
}

void MarkupParser::stop(FaultKind kind, const std::string& reason, std::uint64_t ahead) {
    noteFault(kind, reason, ahead);
    XML_StopParser(parser.get(), XML_FALSE);
}

// The fault lies where expat stands; in the middle of a document, `ahead` bytes behind that.
void MarkupParser::noteFault(FaultKind kind, const std::string& reason, std::uint64_t ahead) {
    LineColumn at;
    if (atDocumentBegin) {
        at = {XML_GetCurrentLineNumber(parser.get()), XML_GetCurrentColumnNumber(parser.get()) + 1};
    } else {
        at = countLines(*stream, currentPlace() + ahead, encoding());
    }
    found = Fault{kind, "line " + std::to_string(at.line) + ", column " +
                            std::to_string(at.column) + ": " + reason};
}

} // namespace olmhost
