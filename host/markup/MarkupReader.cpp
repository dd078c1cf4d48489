#include "host/markup/MarkupReader.h"

#include <algorithm>
#include <array>

#include "host/markup/NameHash.h"

namespace olmhost {

namespace {

constexpr std::size_t maxUnitsKept = std::size_t{1} << 16;

} // namespace

void MarkupReader::open(Handle& document) {
    stream = &document;
    elements.clear();
    root.reset();
    lastSerial = 0;
    lastPlace = 0;
    isAfterOpening = false;
    isSelfClosed = false;
    isTextDone = true;
    isTextAnnounced = false;
    textRead = 0;
    textToPass = 0;
    textUnits.dropHalf();
    isFaultReported = false;
    isLost = false;
    tagMaps.clear();
    parser.open(document);
}

void MarkupReader::close() {
    stream = nullptr;
    parser.close();
    if (attributeUnits.size() > maxUnitsKept) {
        attributeUnits = {};
    }
}

MarkupReader::Step MarkupReader::nextTag(UTXMLTagRecord& tag, std::uint64_t& place) {
    if (!isTextAnnounced && hasText()) {
        isTextAnnounced = true;
        return Step::TextPending;
    }
    if (!isTextDone) {
        skipText();
    }
    const EventKind kind = peek().kind;
    if (kind == EventKind::End) {
        parser.queue.dropAttributes();
        reportFault();
        return Step::End;
    }
    place = peek().place;
    if (kind == EventKind::Opening) {
        deliverOpening(tag);
    } else {
        deliverClosing(tag);
    }
    return Step::Tag;
}

void MarkupReader::deliverOpening(UTXMLTagRecord& tag) {
    const MarkupEvent& event = parser.queue.front();
    const std::string_view name = parser.queue.frontBytes();
    const std::uint32_t hash = nameHash(name);
    const OpenElement element{hash, tagMaps.find(name, hash), ++lastSerial};
    elements.push_back(element);
    if (elements.size() == 1) {
        root = element;
    }
    tag = {static_cast<std::uint32_t>(elements.size()), element.id, 0, element.serial};
    lastPlace = event.selfClosed ? event.place - event.tagLength : event.place;
    isAfterOpening = true;
    isSelfClosed = event.selfClosed;
    isTextDone = event.selfClosed;
    isTextAnnounced = false;
    textRead = 0;
    parser.queue.pop();
}

void MarkupReader::deliverClosing(UTXMLTagRecord& tag) {
    const MarkupEvent& event = parser.queue.front();
    const OpenElement element = elements.back();
    std::uint32_t id = element.id;
    if (element.serial == 0) {
        id = tagMaps.find(parser.queue.frontBytes(), element.nameHash);
    }
    tag = {static_cast<std::uint32_t>(elements.size()), id, UTXML_CLOSING_TAG, element.serial};
    elements.pop_back();
    lastPlace = event.place;
    isAfterOpening = false;
    isSelfClosed = false;
    isTextDone = true;
    textRead = 0;
    parser.queue.pop();
}

bool MarkupReader::nextAttribute(Attribute& attribute) {
    EventQueue::Attribute bytes;
    if (!parser.queue.nextAttribute(bytes)) {
        return false;
    }
    // UTF-16 never has more units than UTF-8 has bytes.
    const std::size_t maxUnits = bytes.name.size() + bytes.value.size() + 2;
    if (attributeUnits.size() < maxUnits) {
        attributeUnits.resize(maxUnits);
    }
    const auto convert = [](std::string_view text, std::uint16_t* units) {
        const std::size_t count = TextUnits().read(text, units, text.size());
        units[count] = 0;
        return static_cast<std::uint32_t>(count);
    };
    std::uint16_t* const name = attributeUnits.data();
    attribute.name = name;
    attribute.nameLength = convert(bytes.name, name);
    attribute.value = name + attribute.nameLength + 1;
    attribute.valueLength = convert(bytes.value, name + attribute.nameLength + 1);
    return true;
}

std::optional<std::uint32_t> MarkupReader::readText(std::uint16_t* units, std::uint32_t capacity) {
    if (!hasText()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(takeUnits(units, capacity));
}

void MarkupReader::skipText() {
    textToPass = 0;
    textUnits.dropHalf();
    EventQueue& queue = parser.queue;
    while (!queue.empty() && queue.front().kind == EventKind::Text) {
        queue.popText(queue.front().length);
    }
    if (!isTextDone && queue.empty()) {
        parser.skipText();
    }
    isTextDone = true;
}

bool MarkupReader::skipElement(const UTXMLTagRecord& opening) {
    const std::size_t depth = opening.host0;
    const bool isOpen = opening.host1 != 0 && depth != 0 && depth <= elements.size() &&
                        elements[depth - 1].serial == opening.host1;
    if (!isOpen || (opening.flags & UTXML_CLOSING_TAG) != 0) {
        return false;
    }
    skipText();
    std::size_t openCount = elements.size();
    for (;;) {
        if (parser.queue.empty()) {
            parser.skipUntilFewerThan(static_cast<std::uint32_t>(depth));
            openCount = depth;
        }
        const EventKind kind = peek().kind;
        if (kind == EventKind::End) {
            parser.queue.dropAttributes();
            reportFault();
            return false;
        }
        if (kind == EventKind::Opening) {
            ++openCount;
        } else if (kind == EventKind::Closing && --openCount < depth) {
            break;
        }
        parser.queue.pop();
    }
    elements.resize(depth);
    UTXMLTagRecord closing{};
    deliverClosing(closing);
    return true;
}

void MarkupReader::save(tagUTXMLSaveData& block) const {
    currentState().store(block);
}

bool MarkupReader::restore(const tagUTXMLSaveData& block) {
    const SavedState saved = SavedState::from(block);
    if (!saved.isValid()) {
        return false;
    }
    parser.queue.dropAttributes();
    if (saved == currentState() && !isLost) {
        return true;
    }
    const bool isThere = parser.startAt(saved);
    elements.clear();
    for (const std::uint32_t hash : parser.elementsAtStart()) {
        elements.push_back({hash, UTXML_UNKNOWN_TAG, 0});
    }
    // A document has one root, so it is the one that was delivered before.
    if (root && !elements.empty() && elements.front().nameHash == root->nameHash) {
        elements.front() = *root;
    }
    lastPlace = saved.place;
    isAfterOpening = saved.has(SavedState::AfterOpening);
    isSelfClosed = saved.has(SavedState::SelfClosed);
    isTextDone = !isAfterOpening || isSelfClosed || saved.has(SavedState::TextDone);
    isTextAnnounced = saved.has(SavedState::TextAnnounced);
    textRead = saved.textRead;
    textToPass = isTextDone ? 0 : saved.textRead;
    textUnits.dropHalf();
    isLost = !isThere;
    return isThere;
}

SavedState MarkupReader::currentState() const {
    SavedState saved;
    if (lastPlace == 0 && !isAfterOpening) {
        return saved;
    }
    saved.place = lastPlace;
    saved.textRead = textRead;
    saved.encoding = parser.encoding();
    const auto flagIf = [](bool isSet, std::uint8_t flag) {
        return isSet ? flag : std::uint8_t{0};
    };
    saved.flags = flagIf(isAfterOpening, SavedState::AfterOpening) |
                  flagIf(isSelfClosed, SavedState::SelfClosed) |
                  flagIf(isAfterOpening && isTextAnnounced, SavedState::TextAnnounced) |
                  flagIf(isAfterOpening && isTextDone, SavedState::TextDone) |
                  flagIf(parser.countsTags(), SavedState::ByCount);
    const std::size_t depth = elements.size() - (isSelfClosed ? 1 : 0);
    saved.depth = static_cast<std::uint16_t>(depth);
    if (!saved.needsReplay()) {
        std::transform(elements.begin(), elements.begin() + static_cast<std::ptrdiff_t>(depth),
                       saved.names.begin(),
                       [](const OpenElement& element) { return element.nameHash; });
    }
    return saved;
}

const MarkupEvent& MarkupReader::peek() {
    while (parser.queue.empty()) {
        parser.fill();
    }
    return parser.queue.front();
}

// Returns whether text of the element opened last is unread.
bool MarkupReader::hasText() {
    if (isTextDone) {
        return false;
    }
    passReadText();
    if (textUnits.holdsHalf() || hasQueuedText()) {
        return true;
    }
    isTextDone = true;
    return false;
}

// Returns whether the front of the queue is text. White space is text once something follows it: an
// opening tag would have removed it.
bool MarkupReader::hasQueuedText() {
    for (;;) {
        const MarkupEvent& event = peek();
        if (event.kind != EventKind::Text) {
            return false;
        }
        if (!event.blank || parser.queue.size() > 1) {
            return true;
        }
        parser.fill();
    }
}

std::size_t MarkupReader::takeUnits(std::uint16_t* units, std::size_t capacity) {
    std::size_t done = 0;
    while (done < capacity) {
        std::string_view text;
        if (!textUnits.holdsHalf()) {
            if (!hasQueuedText()) {
                break;
            }
            text = parser.queue.frontBytes();
        }
        const std::size_t size = text.size();
        done += textUnits.read(text, units + done, capacity - done);
        if (size != 0) {
            parser.queue.popText(size - text.size());
        }
    }
    textRead += done;
    return done;
}

void MarkupReader::passReadText() {
    std::array<std::uint16_t, 1024> units;
    while (textToPass > 0) {
        const std::uint64_t before = textRead;
        const std::size_t count =
            takeUnits(units.data(), std::min<std::uint64_t>(textToPass, units.size()));
        textRead = before;
        textToPass = count == 0 ? 0 : textToPass - count;
    }
}

void MarkupReader::reportFault() {
    if (parser.fault() != nullptr && !isFaultReported) {
        isFaultReported = true;
        stream->reportFault(parser.fault()->kind, parser.fault()->text);
    }
}

} // namespace olmhost
