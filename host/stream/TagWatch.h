#ifndef OLMKIT_HOST_STREAM_TAGWATCH_H
#define OLMKIT_HOST_STREAM_TAGWATCH_H

#include <cstdint>
#include <limits>

namespace olmhost {

// Is notified of a document's tags as they are parsed, whatever the reader does with them. It sees
// no more of the document than its reader has asked for, rounded up to what is parsed at once.
class TagWatch {
public:
    static constexpr std::uint32_t everyDepth = std::numeric_limits<std::uint32_t>::max();

    TagWatch() = default;
    TagWatch(const TagWatch&) = delete;
    TagWatch& operator=(const TagWatch&) = delete;
    virtual ~TagWatch() = default;

    // Reading of a document begins at its start.
    virtual void beginDocument() = 0;

    // An element begins; the root's depth is 1. `attributes`: names and values alternately, then
    // null. All texts are UTF-8.
    virtual void opened(std::uint32_t depth, const char* name, const char* const* attributes) = 0;

    // An element ends.
    virtual void closed(std::uint32_t depth) = 0;

    // The deepest elements whose tags are reported. The watching object may change them at any
    // time.
    std::uint32_t openingsTo = everyDepth;
    std::uint32_t closingsTo = everyDepth;
};

} // namespace olmhost

#endif
