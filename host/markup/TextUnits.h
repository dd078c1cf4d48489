#ifndef OLMKIT_HOST_MARKUP_TEXTUNITS_H
#define OLMKIT_HOST_MARKUP_TEXTUNITS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace olmhost {

// Converts UTF-8 to UTF-16 units, piece by piece. When a character above U+FFFF doesn't fit at the
// end of the caller's buffer, its second half is held for the next call.
class TextUnits {
public:
    // Converts as much from the front of `text` as fits into `capacity` units, and removes it from
    // `text`. Returns the number of units. A byte that doesn't begin a whole character in `text`
    // becomes U+FFFD.
    std::size_t read(std::string_view& text, std::uint16_t* units, std::size_t capacity);

    bool holdsHalf() const { return half != 0; }
    void dropHalf() { half = 0; }

private:
    std::uint16_t half = 0; // the low surrogate for the next call, or 0
};

} // namespace olmhost

#endif
