#ifndef OLMKIT_HOST_MARKUP_EVENTQUEUE_H
#define OLMKIT_HOST_MARKUP_EVENTQUEUE_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "host/markup/ByteArena.h"

namespace olmhost {

enum class EventKind : std::uint8_t {
    Opening, // a tag that opens an element
    Closing, // a tag that closes one; a self-closed tag is both
    Text,    // text directly after an opening tag
    End,     // of the document, or its fault: nothing follows
};

// One event. The queue holds its bytes.
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
// All their bytes (UTF-8) are in one arena, which is cleared whenever the queue has run empty.
class EventQueue {
public:
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    // --- the parser's side ---

    // `attributes`: names and values alternately, then null.
    void addOpening(const char* name, const char** attributes, std::uint64_t place,
                    std::uint32_t tagLength);
    // `name` is empty for an element whose opening tag was an event: the reader knows its name.
    void addClosing(std::string_view name, std::uint64_t place);
    // Appends to the text at the back, or adds a text when the back is something else.
    void addText(const char* bytes, std::size_t size, bool blank) {
        if (!hasTextAtBack()) {
            pushText(blank);
        }
        events.back().length += static_cast<std::uint32_t>(size);
        events.back().blank = blank;
        arena.append(bytes, size);
    }
    void addEnd();

    // Removes white space at the back that has turned out not to be text.
    void dropBlankAtBack();
    // Returns the opening tag at the back; null when the back is something else.
    MarkupEvent* openingAtBack();

    // Frees the bytes of all events taken, once the queue is empty. Keeps the attributes of the tag
    // taken last.
    void recycle();
    // Returns the size of all that the queue holds, in bytes, roughly.
    std::size_t weight() const { return arena.size() + events.size() * sizeof(MarkupEvent); }

    // --- the reader's side ---

    bool empty() const { return head == events.size(); }
    std::size_t size() const { return events.size() - head; }
    const MarkupEvent& front() const { return events[head]; }
    // Returns the name or the text of the event at the front.
    std::string_view frontBytes() const { return {arena.data() + front().offset, front().length}; }
    // Removes the front. The attributes of an opening tag stay until the next tag is removed.
    void pop();
    // Drops bytes from the front of the text at the front, and the text with its last byte.
    void popText(std::size_t size);

    // Reads the next attribute of the opening tag removed last. Returns false when none is left.
    bool nextAttribute(Attribute& attribute);
    void dropAttributes() { attributesLeft = 0; }

    // Empties the queue, and frees memory beyond what common documents need.
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
