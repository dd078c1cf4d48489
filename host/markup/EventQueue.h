#ifndef OLMKIT_HOST_MARKUP_EVENTQUEUE_H
#define OLMKIT_HOST_MARKUP_EVENTQUEUE_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "host/markup/ByteArena.h"

namespace olmhost {

enum class EventKind : std::uint8_t {
    Opening, // a tag that opens an element
    Closing, // one that closes it; a self-closed tag gives both
    Text,    // text directly behind an opening tag
    End,     // of the document, or its fault: nothing comes behind it
};

// One thing that the parser met. Its bytes lie in the queue.
struct MarkupEvent {
    std::uint64_t place;          // tags: see MarkupParser
    std::uint32_t offset;         // of the name or the text in the queue's bytes
    std::uint32_t length;         // of the name or the text
    std::uint32_t attributeCount; // Opening
    std::uint32_t tagLength;      // Opening: bytes in the document
    EventKind kind;
    bool selfClosed; // Opening
    bool blank;      // Text: white space alone so far
};

// Events in the document's order: the parser adds at the back, the reader takes from the front.
// All their bytes (UTF-8) lie in one arena, which is thrown away whenever the queue has run empty.
class EventQueue {
public:
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    // --- the parser's side ---

    // `attributes`: names and values in turns, then null.
    void addOpening(const char* name, const char** attributes, std::uint64_t place,
                    std::uint32_t tagLength);
    // `name` may be empty; the reader knows most names.
    void addClosing(std::string_view name, std::uint64_t place);
    // Lengthens the text at the back, if that is what stands there.
    void addText(const char* bytes, std::size_t size, bool blank) {
        if (!hasTextAtBack()) {
            pushText(blank);
        }
        events.back().length += static_cast<std::uint32_t>(size);
        events.back().blank = blank;
        arena.append(bytes, size);
    }
    void addEnd();

    // Takes back white space at the back that has turned out to be no text.
    void dropBlankAtBack();
    // The opening tag at the back, or null when something else stands there.
    MarkupEvent* openingAtBack();

    // Makes room when everything was taken. The attributes of the tag taken last survive.
    void recycle();
    // What the queue holds, roughly, in bytes.
    std::size_t weight() const { return arena.size() + events.size() * sizeof(MarkupEvent); }

    // --- the reader's side ---

    bool empty() const { return head == events.size(); }
    std::size_t size() const { return events.size() - head; }
    const MarkupEvent& front() const { return events[head]; }
    // The name or the text of the event at the front.
    std::string_view frontBytes() const { return {arena.data() + front().offset, front().length}; }
    // Drops the front; of an opening tag the attributes stay until the next tag is dropped.
    void pop();
    // Drops bytes from the front of the text at the front, and the text with its last byte.
    void popText(std::size_t size);

    // The next attribute of the opening tag dropped last; false when there is none left.
    bool nextAttribute(Attribute& attribute);
    void dropAttributes() { attributesLeft = 0; }

    // Empties the queue. Gives back room beyond what common documents need.
    void clear();

private:
    bool hasTextAtBack() const {
        return head != events.size() && events.back().kind == EventKind::Text;
    }
    void pushText(bool blank);

    std::vector<MarkupEvent> events;
    std::size_t head = 0; // index of the front
    ByteArena arena;
    std::size_t attributeOffset = 0; // in the arena, of the next attribute
    std::size_t attributeEnd = 0;
    std::uint32_t attributesLeft = 0;
};

} // namespace olmhost

#endif
