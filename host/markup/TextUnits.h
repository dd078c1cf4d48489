#ifndef OLMKIT_HOST_MARKUP_TEXTUNITS_H
#define OLMKIT_HOST_MARKUP_TEXTUNITS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace olmhost {

// Turns UTF-8 into UTF-16 units, piece by piece. A character above U+FFFF may fall on the end of
// the caller's room: its second half is then held for the next call.
class TextUnits {
public:
    // Moves as much from the front of `text` as fits into `capacity` units; gives how many came.
    // A byte that begins no whole character in `text` becomes U+FFFD.
    std::size_t read(std::string_view& text, std::uint16_t* units, std::size_t capacity);

    bool holdsHalf() const { return half != 0; }
    void dropHalf() { half = 0; }

private:
    std::uint16_t half = 0; // a low surrogate that is still to come, or 0
};

} // namespace olmhost

#endif
