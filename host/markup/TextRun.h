#ifndef OLMKIT_HOST_MARKUP_TEXTRUN_H
#define OLMKIT_HOST_MARKUP_TEXTRUN_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace olmhost {

// The text between two tags while it is parsed.
class TextRun {
public:
    // Begins the text after a tag. `wanted`: it goes into the queue.
    void begin(bool wanted) {
        isWantedNow = wanted;
        hasInk = false;
        blankSize = 0;
        queuedSize = 0;
        pauseSize = firstTextAhead;
    }

    // The rest is not wanted.
    void drop() { isWantedNow = false; }

    bool isWanted() const { return isWantedNow; }
    bool isBlank() const { return !hasInk; }

    // Takes the next bytes. Returns the size of the white space that the run begins with.
    std::uint64_t add(const char* bytes, std::size_t size) {
        if (!hasInk) {
            hasInk = !std::all_of(bytes, bytes + size, isBlankCharacter);
            blankSize += hasInk ? 0 : size;
        }
        return blankSize;
    }

    // Counts bytes that went into the queue. Returns true when parsing should pause, until it is
    // known whether the text is read at all; most long ones are skipped.
    bool addQueued(std::size_t size) {
        queuedSize += size;
        if (queuedSize <= pauseSize) {
            return false;
        }
        pauseSize = queuedSize + maxTextAhead;
        return true;
    }

private:
    static constexpr std::uint64_t firstTextAhead = 512; // bytes
    static constexpr std::uint64_t maxTextAhead = 65536; // bytes

    static bool isBlankCharacter(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

    bool isWantedNow = false;
    bool hasInk = false;          // it is more than white space
    std::uint64_t blankSize = 0;  // bytes of white space at its begin
    std::uint64_t queuedSize = 0; // bytes
    std::uint64_t pauseSize = 0;  // bytes
};

} // namespace olmhost

#endif
