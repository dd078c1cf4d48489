#include "host/markup/EventQueue.h"

#include <array>
#include <cstring>

namespace olmhost {

namespace {

constexpr std::size_t maxBytesKept = std::size_t{1} << 20;
constexpr std::size_t maxEventsKept = std::size_t{1} << 15;

// Precede the bytes of each attribute: the lengths of its name and value.
using AttributeLengths = std::array<std::uint32_t, 2>;

} // namespace

void EventQueue::addOpening(const char* name, const char** attributes, std::uint64_t place,
                            std::uint32_t tagLength) {
    const auto offset = static_cast<std::uint32_t>(arena.size());
    const std::size_t nameLength = std::strlen(name);
    arena.append(name, nameLength);

    std::uint32_t attributeCount = 0;
    for (; *attributes != nullptr; attributes += 2, ++attributeCount) {
        const AttributeLengths lengths{static_cast<std::uint32_t>(std::strlen(attributes[0])),
                                       static_cast<std::uint32_t>(std::strlen(attributes[1]))};
        char* to = arena.extend(sizeof lengths + lengths[0] + lengths[1]);
        std::memcpy(to, lengths.data(), sizeof lengths);
        std::memcpy(to + sizeof lengths, attributes[0], lengths[0]);
        std::memcpy(to + sizeof lengths + lengths[0], attributes[1], lengths[1]);
    }
    events.push_back({place, offset, static_cast<std::uint32_t>(nameLength), attributeCount,
                      tagLength, EventKind::Opening, false, false});
}

void EventQueue::addClosing(std::string_view name, std::uint64_t place) {
    const auto offset = static_cast<std::uint32_t>(arena.size());
    if (!name.empty()) {
        arena.append(name.data(), name.size());
    }
    events.push_back({place, offset, static_cast<std::uint32_t>(name.size()), 0, 0,
                      EventKind::Closing, false, false});
}

void EventQueue::addEnd() {
    events.push_back({0, 0, 0, 0, 0, EventKind::End, false, false});
}

void EventQueue::pushText(bool blank) {
    const auto offset = static_cast<std::uint32_t>(arena.size());
    events.push_back({0, offset, 0, 0, 0, EventKind::Text, false, blank});
}

void EventQueue::dropBlankAtBack() {
    if (hasTextAtBack() && events.back().blank) {
        arena.shrinkTo(events.back().offset);
        events.pop_back();
    }
}

MarkupEvent* EventQueue::openingAtBack() {
    const bool isOpening = !empty() && events.back().kind == EventKind::Opening;
    return isOpening ? &events.back() : nullptr;
}

void EventQueue::recycle() {
    if (!empty()) {
        return;
    }
    events.clear();
    head = 0;
    if (attributesLeft == 0) {
        arena.shrinkTo(0);
        return;
    }
    const std::size_t size = attributeEnd - attributeOffset;
    std::memmove(arena.data(), arena.data() + attributeOffset, size);
    arena.shrinkTo(size);
    attributeOffset = 0;
    attributeEnd = size;
}

void EventQueue::pop() {
    const MarkupEvent& event = front();
    attributesLeft = 0;
    if (event.kind == EventKind::Opening) {
        attributesLeft = event.attributeCount;
        attributeOffset = event.offset + event.length;
        // The attributes end where the next event's bytes begin.
        attributeEnd = size() > 1 && events[head + 1].kind != EventKind::End
                           ? events[head + 1].offset
                           : arena.size();
    }
    ++head;
}

void EventQueue::popText(std::size_t size) {
    MarkupEvent& text = events[head];
    text.offset += static_cast<std::uint32_t>(size);
    text.length -= static_cast<std::uint32_t>(size);
    if (text.length == 0) {
        ++head;
    }
}

bool EventQueue::nextAttribute(Attribute& attribute) {
    if (attributesLeft == 0) {
        return false;
    }
    AttributeLengths lengths{};
    const char* from = arena.data() + attributeOffset;
    std::memcpy(lengths.data(), from, sizeof lengths);
    attribute.name = {from + sizeof lengths, lengths[0]};
    attribute.value = {from + sizeof lengths + lengths[0], lengths[1]};
    attributeOffset += sizeof lengths + lengths[0] + lengths[1];
    --attributesLeft;
    return true;
}

void EventQueue::clear() {
    events.clear();
    if (events.capacity() > maxEventsKept) {
        events.shrink_to_fit();
    }
    head = 0;
    attributesLeft = 0;
    arena.release(maxBytesKept);
}

} // namespace olmhost
